#include "audio/ffmpeg/encoder.h"

#include "base/log.h"

#include <chrono>
#include <utility>

namespace BASS {
namespace {

constexpr int kNotYet = -2;
/// An encoder further behind than this will not catch up.
constexpr std::size_t kMostSeconds = 20;
constexpr std::chrono::milliseconds kCareEvery{50};
constexpr std::size_t kChannels = 2;

} // namespace

Encoder::Encoder(Setup setup) : m_setup(std::move(setup)) {}

Encoder::~Encoder() {
    if (!m_thread.joinable())
        return;
    finish(false);
    m_thread.join();
}

int Encoder::start() {
    m_thread = std::thread([this] { run(); });
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_openResult != kNotYet; });
    return m_openResult;
}

void Encoder::startWhenNeeded() {
    m_startsLate = true;
    m_isRunning.store(true);
}

/// With the mutex held.
void Encoder::ensureThread() {
    if (m_startsLate && !m_thread.joinable())
        m_thread = std::thread([this] { run(); });
}

void Encoder::push(const float* samples, std::size_t frames) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_isFinishing || m_hasFailed)
            return;
        if (m_queuedFrames + frames > kMostSeconds * static_cast<std::size_t>(m_setup.rate)) {
            qCWarning(lcAudio, "encoder cannot keep up handle=%u", m_setup.handle);
            m_hasFailed = true;
            m_isRunning.store(false);
        } else {
            m_queue.emplace_back(samples, samples + frames * kChannels);
            m_queuedFrames += frames;
            ensureThread();
        }
    }
    m_changed.notify_all();
}

std::size_t Encoder::queuedFrames() {
    const std::lock_guard lock(m_mutex);
    return m_queuedFrames;
}

void Encoder::finish(bool isComplete) {
    {
        const std::lock_guard lock(m_mutex);
        m_isFinishing = true;
        if (!isComplete) {
            m_queue.clear();
            m_queuedFrames = 0;
        }
        ensureThread();
    }
    m_changed.notify_all();
}

void Encoder::wait() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isOver; });
}

void Encoder::deliver(const std::uint8_t* data, std::size_t size, std::int64_t offset) {
    const auto length = static_cast<DWORD>(size);
    if (offset == m_delivered) {
        m_delivered += static_cast<std::int64_t>(size);
        m_setup.proc(m_setup.handle, m_channel.load(), data, length, m_setup.user);
    } else if (m_setup.rewrite != nullptr) {
        m_setup.rewrite(m_setup.handle,
                        m_channel.load(),
                        data,
                        length,
                        static_cast<QWORD>(offset),
                        m_setup.user);
    }
}

void Encoder::run() {
    const bool wasOpen = encodeToTheEnd() || m_startsLate;
    m_isRunning.store(false);
    if (wasOpen)
        m_setup.proc(m_setup.handle, m_channel.load(), nullptr, 0, m_setup.user);
    m_hasEnded.store(true);
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_all();
    if (wasOpen && m_setup.ended)
        m_setup.ended();
}

/// What an encoder writes before its first sample waits for that: one that is ended without audio,
/// as by a stop right at a cut, leaves nothing, where a head alone would be a file that no player
/// opens.
void Encoder::write(const std::uint8_t* data, std::size_t size, std::int64_t offset) {
    if (m_hasAudio)
        deliver(data, size, offset);
    else
        m_head.insert(m_head.end(), data, data + size);
}

void Encoder::audioCame() {
    if (std::exchange(m_hasAudio, true) || m_head.empty())
        return;
    deliver(m_head.data(), m_head.size(), 0);
    m_head = {};
}

/// False: it did not open.
bool Encoder::encodeToTheEnd() {
    const auto encoder =
        m_setup.make([this](const std::uint8_t* data, std::size_t size, std::int64_t at) {
            write(data, size, at);
        });
    const int result = encoder->open();
    const bool isOpen = result == BASS_OK;
    m_isRunning.store(isOpen);
    {
        const std::lock_guard lock(m_mutex);
        m_openResult = result;
    }
    m_changed.notify_all();
    if (!isOpen)
        return false;
    if (!encodeAll(*encoder) || !encoder->finish())
        qCWarning(lcAudio, "encoder has failed handle=%u", m_setup.handle);
    return true;
}

/// False: it has failed.
bool Encoder::encodeAll(PcmEncoder& encoder) {
    const bool needsCare = encoder.needsCare();
    std::deque<std::vector<float>> chunks;
    while (takeChunks(chunks, needsCare)) {
        if (!chunks.empty())
            audioCame();
        for (const std::vector<float>& chunk : chunks) {
            if (!encoder.encode(chunk.data(), chunk.size() / kChannels))
                return false;
            m_encodedFrames.fetch_add(chunk.size() / kChannels);
        }
        if (needsCare && !encoder.tend())
            return false;
        chunks.clear();
    }
    const std::lock_guard lock(m_mutex);
    return !m_hasFailed;
}

/// Waits for something to do. False: there will be nothing more.
bool Encoder::takeChunks(std::deque<std::vector<float>>& out, bool needsCare) {
    std::unique_lock lock(m_mutex);
    const auto isDue = [this] { return !m_queue.empty() || m_isFinishing || m_hasFailed; };
    if (needsCare)
        m_changed.wait_for(lock, kCareEvery, isDue);
    else
        m_changed.wait(lock, isDue);
    if (m_hasFailed || (m_queue.empty() && m_isFinishing))
        return false;
    out.swap(m_queue);
    m_queuedFrames = 0;
    return true;
}

} // namespace BASS
