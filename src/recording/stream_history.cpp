#include "recording/stream_history.h"

#include <algorithm>

namespace BASS {
namespace {

/// A title that comes late can move the cut back by so much of the stream.
constexpr qint64 kMaxBytes = 512 * 1024;

} // namespace

void StreamHistory::push(const AudioFrame& frame) {
    m_frames.push_back(frame);
    m_times.push_back(m_now);
    m_bytes += frame.bytes.size();
    while (m_bytes > kMaxBytes && m_frames.size() > kPreRollFrames) {
        m_bytes -= m_frames.front().bytes.size();
        m_frames.pop_front();
        m_times.pop_front();
    }
    if (frame.sampleRate <= 0)
        return;
    if (frame.sampleRate != m_sampleRate) {
        m_rateSince = m_now;
        m_samples = 0;
        m_sampleRate = frame.sampleRate;
    }
    m_samples += frame.samples;
    m_now = m_rateSince + Time(m_samples * std::micro::den / m_sampleRate);
}

std::size_t StreamHistory::firstFrom(qint64 position) const {
    const auto at = std::lower_bound(
        m_frames.begin(), m_frames.end(), position, [](const AudioFrame& frame, qint64 place) {
            return frame.position < place;
        });
    return static_cast<std::size_t>(at - m_frames.begin());
}

std::size_t StreamHistory::firstFrom(Time time) const {
    const auto at = std::lower_bound(m_times.begin(), m_times.end(), time);
    return static_cast<std::size_t>(at - m_times.begin());
}

FrameHistory StreamHistory::preRoll() const {
    FrameHistory before;
    for (std::size_t n = m_frames.size(); n > 0 && before.size() < kPreRollFrames; --n) {
        before.push_front(m_frames[n - 1]);
        if (m_frames[n - 1].followsGap)
            break;
    }
    return before;
}

FrameHistory StreamHistory::takeFrom(std::size_t at) {
    const auto from = m_frames.begin() + static_cast<std::ptrdiff_t>(at);
    FrameHistory taken(from, m_frames.end());
    for (const AudioFrame& frame : taken) {
        m_bytes -= frame.bytes.size();
        m_samples -= frame.samples;
    }
    if (!taken.empty())
        m_now = m_times[at];
    m_frames.erase(from, m_frames.end());
    m_times.resize(at);
    return taken;
}

} // namespace BASS
