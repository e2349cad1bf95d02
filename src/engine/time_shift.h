#pragma once

#include <algorithm>
#include <chrono>

namespace BASS {

/// How far what is heard lies behind what the station sends, since playing began: the sum of the
/// pauses. What a station sends ahead at the beginning does not count. Pure; time comes from the
/// caller.
class TimeShift {
  public:
    using Time = std::chrono::milliseconds;

    void pause(Time now) {
        if (!m_isPaused)
            m_pausedAt = now;
        m_isPaused = true;
    }
    void resume(Time now) {
        m_behind = behind(now);
        m_isPaused = false;
    }
    /// A new station, or a jump to what it sends now.
    void reset() { *this = {}; }

    [[nodiscard]] bool isPaused() const { return m_isPaused; }
    [[nodiscard]] Time behind(Time now) const {
        return m_behind + (m_isPaused ? std::max(Time(0), now - m_pausedAt) : Time(0));
    }

  private:
    Time m_behind{0};
    Time m_pausedAt{0};
    bool m_isPaused = false;
};

} // namespace BASS
