#pragma once

#include "recording/cut_writer.h"

#include <chrono>
#include <deque>

namespace BASS {

/// The newest frames of a stream with the stream time at which each begins: what a cut needs of the
/// past. Bounded in bytes. Pure; any one thread.
class StreamHistory {
  public:
    using Time = std::chrono::microseconds;

    void push(const AudioFrame& frame);
    /// The stream time behind the newest frame; frames of unknown length take none.
    [[nodiscard]] Time now() const { return m_now; }

    [[nodiscard]] std::size_t size() const { return m_frames.size(); }
    [[nodiscard]] const AudioFrame& frame(std::size_t at) const { return m_frames[at]; }
    [[nodiscard]] Time time(std::size_t at) const { return m_times[at]; }
    /// The first frame at or behind a place of the stream; size(): all lie before it.
    [[nodiscard]] std::size_t firstFrom(qint64 position) const;
    /// The first frame that begins at or behind a stream time; size(): all begin before it.
    [[nodiscard]] std::size_t firstFrom(Time time) const;
    /// What lies directly before a frame that follows the newest one; nothing across a gap.
    [[nodiscard]] FrameHistory preRoll() const;
    /// Removes the frames from `at` on, in their order, and sets the time back to their beginning.
    FrameHistory takeFrom(std::size_t at);

  private:
    FrameHistory m_frames;
    std::deque<Time> m_times;
    qint64 m_bytes = 0;
    Time m_now{0};
    // samples are counted from the last change of rate, so that no rounding adds up
    Time m_rateSince{0};
    qint64 m_samples = 0;
    int m_sampleRate = 0;
};

} // namespace BASS
