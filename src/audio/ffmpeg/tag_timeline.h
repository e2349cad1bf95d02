#pragma once

#include "audio/bass_defs.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace BASS {

/// Titles that have been decoded and not yet been heard, in order. Pure; its owner guards it.
class TagTimeline {
  public:
    struct Entry {
        std::uint64_t frame; ///< the first one that it belongs to
        DWORD tagType;
        std::string data;
    };

    void add(Entry entry) { m_entries.push_back(std::move(entry)); }

    /// Frame of the next entry; nothing: none waits.
    [[nodiscard]] std::optional<std::uint64_t> next() const {
        if (m_entries.empty())
            return std::nullopt;
        return m_entries.front().frame;
    }

    /// The next entry whose frame has been reached.
    std::optional<Entry> take(std::uint64_t heardFrame) {
        if (m_entries.empty() || m_entries.front().frame > heardFrame)
            return std::nullopt;
        Entry entry = std::move(m_entries.front());
        m_entries.pop_front();
        return entry;
    }

  private:
    std::deque<Entry> m_entries;
};

} // namespace BASS
