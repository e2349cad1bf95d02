#pragma once

#include "audio/effects/effect_chain.h"
#include "audio/ffmpeg/decode_worker.h"
#include "audio/ffmpeg/pcm_tap.h"
#include "audio/ffmpeg/stream_source.h"
#include "audio/ffmpeg/stream_tap.h"
#include "audio/ffmpeg/sync_table.h"
#include "audio/ffmpeg/tag_timeline.h"
#include "audio/ffmpeg/voice.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace BASS {

class Mixer;

/// One stream: its connection or file, its decoder, what is heard of it and who wants to know.
///
/// *Thread*: any; dispatch() on the dispatcher's. *Owner*: shared by the library's table and calls
/// under way. *Life*: openUrl() or openFile(), waitReady(), use, close().
class StreamChannel {
  public:
    struct Context {
        HSTREAM handle = 0;
        DWORD flags = 0;
        int rate = 44100;
        Mixer* mixer = nullptr;
        Semaphore* signal = nullptr; ///< wakes the dispatcher
    };

    /// A server that trickles bytes without sense ends here.
    static constexpr std::chrono::seconds kLongestCreate{60};

    explicit StreamChannel(const Context& context);
    ~StreamChannel();
    StreamChannel(const StreamChannel&) = delete;
    StreamChannel& operator=(const StreamChannel&) = delete;

    /// Makes what fills the tap.
    using MakeSource = std::function<std::shared_ptr<StreamSource>(std::shared_ptr<StreamTap>)>;
    void openUrl(const MakeSource& make,
                 StreamTap::Callbacks callbacks,
                 std::size_t bufferBytes,
                 std::function<bool(StreamFormat)> accepts);
    /// False where the file does not open.
    bool openFile(const std::filesystem::path& path, std::function<bool(StreamFormat)> accepts);
    void openCapture(std::unique_ptr<DecoderInput> input);
    /// See AudioLibrary::StreamCreatePush().
    void openPush(std::uint64_t begin);
    [[nodiscard]] bool isPushed() const { return m_isPushed; }
    void put(const void* data, std::size_t size);
    void putGap() { m_tap->streamJoins(); }
    void putEnd();
    void startPushed();
    /// Blocks until there is audio, or the reason why not.
    int waitReady(std::chrono::seconds limit = kLongestCreate);
    /// Ends waitReady() with BASS_ERROR_FILEOPEN.
    void cancel();
    /// Ends everything; no callback runs or begins after it returned.
    void close();

    [[nodiscard]] HSTREAM handle() const { return m_context.handle; }
    [[nodiscard]] DWORD flags() const { return m_flags.load(); }
    /// Those in `mask`; all that it has now.
    DWORD setFlags(DWORD flags, DWORD mask);
    [[nodiscard]] Voice& voice() { return m_voice; }
    [[nodiscard]] SyncTable& syncs() { return m_syncs; }
    [[nodiscard]] EffectChain& effects() { return m_effects; }
    [[nodiscard]] PcmTap& pcmTap() { return m_pcmTap; }
    /// As SyncTable::add(). A connection that has ended before anyone asked is told now.
    HSYNC addSync(DWORD type, QWORD param, SYNCPROC* proc, void* user);
    [[nodiscard]] bool isFile() const { return m_file != nullptr && !m_isCapture; }
    [[nodiscard]] DWORD activity() const;
    void info(BASS_CHANNELINFO& out) const;
    [[nodiscard]] int bitrate() const;
    [[nodiscard]] double heardSeconds() const;
    /// Seconds; 0: not known.
    [[nodiscard]] double duration() const;
    void seek(double seconds);
    /// False where it is no live stream, or one that cannot be entered anywhere.
    bool jumpToLive();
    /// Between seconds and bytes of float samples of the source.
    [[nodiscard]] QWORD bytes(double seconds) const;
    [[nodiscard]] double seconds(QWORD bytes) const;
    void setVolume(float value);
    void slideVolume(float value, DWORD milliseconds);
    void deviceLost() { post(BASS_SYNC_DEV_FAIL, 0); }
    /// Null where there is none; valid until the next call with the same type.
    const char* tags(DWORD type);
    [[nodiscard]] QWORD filePosition(DWORD mode) const;

    /// Calls the syncs of what has happened. True when it has ended and frees itself.
    bool dispatch();

  private:
    void startWorker(DecoderInput& input, std::function<bool(StreamFormat)> accepts);
    [[nodiscard]] bool isUnheard() const;
    void pushedAudio(std::vector<float>& samples, std::uint64_t position);
    void pushedEnded();
    void waitForPushed();
    void becomeReady(int error);
    void addTitle(TagTimeline::Entry entry);
    void post(DWORD type, DWORD data);
    void tellDownloadEnd();
    void repeatMissed();
    void hearTitles();
    void setTag(const TagTimeline::Entry& entry);

    const Context m_context;
    std::atomic<DWORD> m_flags;
    Voice m_voice;
    SyncTable m_syncs;
    EffectChain m_effects;
    PcmTap m_pcmTap;
    std::shared_ptr<StreamTap> m_tap;
    std::shared_ptr<StreamSource> m_source;
    std::unique_ptr<DecoderInput> m_file; ///< or a recording device
    bool m_isCapture = false;
    bool m_isPushed = false;
    std::uint64_t m_pushBegin = 0;
    std::unique_ptr<DecodeWorker> m_worker;

    std::mutex m_volumeMutex;   ///< one change at a time
    mutable std::mutex m_mutex; ///< guards all below
    std::condition_variable m_readyChanged;
    std::condition_variable m_pushChanged;
    bool m_isPushStarted = false;
    bool m_isPushEnding = false;
    bool m_isPushDone = false;
    bool m_isReady = false;
    bool m_isClosed = false;
    int m_error = BASS_OK;
    TagTimeline m_timeline;
    std::map<DWORD, std::string> m_tags; ///< heard last, by type
    struct Event {
        DWORD type;
        DWORD data;
    };
    std::deque<Event> m_events;
    bool m_hasMissedEnd = false;          ///< of the connection: nobody had asked for it
    std::map<DWORD, std::string> m_given; ///< texts handed out by tags()
};

} // namespace BASS
