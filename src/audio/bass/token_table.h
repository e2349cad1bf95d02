#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace BASS {

/// What the closed library gets as user pointer is a number of this table, so that a callback that
/// comes too late finds nothing instead of freed memory. Any thread.
template <class Record>
class TokenTable {
  public:
    using Pointer = std::shared_ptr<Record>;

    void* add(Pointer record) {
        const std::lock_guard lock(m_mutex);
        m_records.emplace(++m_last, std::move(record));
        return reinterpret_cast<void*>(m_last);
    }

    Pointer find(void* token) const {
        const std::lock_guard lock(m_mutex);
        const auto place = m_records.find(reinterpret_cast<std::uintptr_t>(token));
        return place == m_records.end() ? nullptr : place->second;
    }

    /// The first record that the test is true for, with its token.
    template <class Test>
    std::pair<void*, Pointer> findIf(Test test) const {
        const std::lock_guard lock(m_mutex);
        for (const auto& [token, record] : m_records) {
            if (test(*record))
                return {reinterpret_cast<void*>(token), record};
        }
        return {nullptr, nullptr};
    }

    std::vector<Pointer> all() const {
        const std::lock_guard lock(m_mutex);
        std::vector<Pointer> result;
        for (const auto& entry : m_records)
            result.push_back(entry.second);
        return result;
    }

    void remove(void* token) {
        const std::lock_guard lock(m_mutex);
        m_records.erase(reinterpret_cast<std::uintptr_t>(token));
    }

    template <class Test>
    void removeIf(Test test) {
        const std::lock_guard lock(m_mutex);
        for (auto place = m_records.begin(); place != m_records.end();)
            place = test(*place->second) ? m_records.erase(place) : std::next(place);
    }

  private:
    mutable std::mutex m_mutex; ///< guards what follows
    std::map<std::uintptr_t, Pointer> m_records;
    std::uintptr_t m_last = 0;
};

} // namespace BASS
