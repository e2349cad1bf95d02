#pragma once

#include "audio/audio_encoding.h"
#include "audio/ffmpeg/pcm_encoder.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace BASS {

/// One running encoder: a thread with a bounded queue of samples in front of it.
///
/// *Thread*: any; the makers' result and every callback are on the encoder's own. *Owner*: shared
/// by the library's table and the tap. *Life*: start(), push(), finish(), wait(). One that waits
/// for its first audio may go without any callback.
class Encoder {
  public:
    struct Setup {
        HENCODE handle = 0;
        ENCODEPROC* proc = nullptr;
        ENCODEREWRITEPROC* rewrite = nullptr;
        void* user = nullptr;
        int rate = 44100; ///< of what is pushed
        /// Called on the encoder's thread, also for another one with the same settings.
        std::function<std::unique_ptr<PcmEncoder>(PcmEncoder::Write)> make;
        std::function<void()> ended; ///< after the last callback
    };

    explicit Encoder(Setup setup);
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    /// Waits until it has opened, some milliseconds. BASS_OK, or why not: then no callback comes.
    int start();
    /// Instead of start(), for settings that have opened before: it starts with the first audio, or
    /// with finish(). One that does not open ends as one that fails later.
    void startWhenNeeded();
    /// Interleaved stereo. Never waits.
    void push(const float* samples, std::size_t frames);
    /// No more comes; isComplete: what is queued is still encoded. Returns at once.
    void finish(bool isComplete);
    /// Until the last callback has returned.
    void wait();

    /// Not yet taken by the encoder.
    [[nodiscard]] std::size_t queuedFrames();

    /// Taken by the encoder, all of them when the callback with length 0 comes.
    [[nodiscard]] std::uint64_t encodedFrames() const { return m_encodedFrames.load(); }
    [[nodiscard]] HENCODE handle() const { return m_setup.handle; }
    [[nodiscard]] const Setup& setup() const { return m_setup; }
    [[nodiscard]] bool isRunning() const { return m_isRunning.load(); }
    [[nodiscard]] bool hasEnded() const { return m_hasEnded.load(); }
    void setChannel(DWORD channel) { m_channel.store(channel); }
    [[nodiscard]] DWORD channel() const { return m_channel.load(); }

  private:
    void ensureThread();
    void run();
    bool encodeToTheEnd();
    bool encodeAll(PcmEncoder& encoder);
    void audioCame();
    void write(const std::uint8_t* data, std::size_t size, std::int64_t offset);
    bool takeChunks(std::deque<std::vector<float>>& out, bool needsCare);
    void deliver(const std::uint8_t* data, std::size_t size, std::int64_t offset);

    const Setup m_setup;
    std::atomic<DWORD> m_channel{0};
    std::atomic<bool> m_isRunning{false};
    std::atomic<bool> m_hasEnded{false};
    std::atomic<std::uint64_t> m_encodedFrames{0};
    std::thread m_thread; ///< made by start(), or with the mutex held

    // encoder thread
    bool m_startsLate = false; ///< set before it starts
    std::int64_t m_delivered = 0;
    bool m_hasAudio = false;
    std::vector<std::uint8_t> m_head; ///< written before the first sample came

    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    std::deque<std::vector<float>> m_queue;
    std::size_t m_queuedFrames = 0;
    bool m_isFinishing = false;
    bool m_hasFailed = false;
    bool m_isOver = false; ///< no callback comes any more
    int m_openResult = -2; ///< kNotYet
};

} // namespace BASS
