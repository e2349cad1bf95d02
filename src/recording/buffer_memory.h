#pragma once

#include "platform/named_mapping.h"

#include <QString>

#include <optional>

namespace BASS {

/// The memory of a recording buffer. Pages that were never written to take none of the machine's
/// memory; all of it is given back when it goes. One thread at a time.
class BufferMemory final {
  public:
    /// `name`: see NamedMapping. Check isValid(): the system may refuse.
    BufferMemory(qint64 bytes, const QString& name);

    [[nodiscard]] bool isValid() const { return m_mapping.has_value(); }
    [[nodiscard]] char* data() const { return m_mapping ? m_mapping->data() : nullptr; }
    [[nodiscard]] qint64 size() const { return m_mapping ? m_mapping->size() : 0; }

  private:
    std::optional<NamedMapping> m_mapping;
};

} // namespace BASS
