#include "platform/named_mapping.h"

#include <utility>

NamedMapping::NamedMapping(NamedMapping&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_bytes(std::exchange(other.m_bytes, 0)),
      m_handle(std::exchange(other.m_handle, -1)) {}

NamedMapping& NamedMapping::operator=(NamedMapping&& other) noexcept {
    // what was held here goes with `other`, at the latest when that ends
    std::swap(m_data, other.m_data);
    std::swap(m_bytes, other.m_bytes);
    std::swap(m_handle, other.m_handle);
    return *this;
}
