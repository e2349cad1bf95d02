#include "audio/ffmpeg/stream_channel.h"

// A stream whose bytes the caller brings, decoded for its encoders alone.

namespace BASS {
namespace {

/// So much may wait in front of an encoder; it fails where much more does.
constexpr std::size_t kQueuedSeconds = 5;
constexpr std::chrono::milliseconds kRoomCheck{10};
/// A title is told before the bytes behind it are put.
constexpr std::chrono::milliseconds kHold{100};

bool isLiveFormat(StreamFormat format) {
    return format != StreamFormat::None && format != StreamFormat::Mp4 &&
           format != StreamFormat::Asf;
}

} // namespace

void StreamChannel::openPush(std::uint64_t begin) {
    m_isPushed = true;
    m_pushBegin = begin;
    m_pcmTap.setHold(kHold);
    m_tap = std::make_shared<StreamTap>(StreamTap::Callbacks{}, StreamTap::kTimeShiftBytes);
    startWorker(m_tap->fifo(), isLiveFormat);
}

void StreamChannel::put(const void* data, std::size_t size) {
    m_tap->body(static_cast<const std::uint8_t*>(data), size);
}

void StreamChannel::putEnd() {
    {
        const std::lock_guard lock(m_mutex);
        m_isPushEnding = true;
    }
    m_pushChanged.notify_all();
    m_tap->ended(BASS_OK);
}

void StreamChannel::startPushed() {
    {
        const std::lock_guard lock(m_mutex);
        m_isPushStarted = true;
    }
    m_pushChanged.notify_all();
}

/// Decode thread. Waits for the first encoder, then for those that cannot keep up.
void StreamChannel::pushedAudio(std::vector<float>& samples, std::uint64_t position) {
    becomeReady(BASS_OK);
    {
        std::unique_lock lock(m_mutex);
        m_pushChanged.wait(lock, [this] { return m_isPushStarted || m_isClosed; });
    }
    if (position >= m_pushBegin) {
        m_effects.process(samples.data(), samples.size() / Voice::kChannels);
        m_pcmTap.feed(samples.data(), samples.size() / Voice::kChannels, position);
    }
    samples.clear(); // nobody hears it
    const std::size_t most = kQueuedSeconds * static_cast<std::size_t>(m_context.rate);
    std::unique_lock lock(m_mutex);
    while (!m_isClosed && m_pcmTap.queuedFrames() > most)
        m_pushChanged.wait_for(lock, kRoomCheck);
}

void StreamChannel::pushedEnded() {
    m_pcmTap.close();
    {
        const std::lock_guard lock(m_mutex);
        m_isPushDone = true;
    }
    m_pushChanged.notify_all();
}

/// Until all that was put has been decoded.
void StreamChannel::waitForPushed() {
    std::unique_lock lock(m_mutex);
    if (m_isPushStarted && m_isPushEnding && !m_isClosed)
        m_pushChanged.wait(lock, [this] { return m_isPushDone; });
}

} // namespace BASS
