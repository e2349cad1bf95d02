#include "audio/ffmpeg/avio_source.h"

#include "audio/bass_defs.h"
#include "audio/ffmpeg/av_handles.h"
#include "audio/ffmpeg/packet_framer.h"
#include "audio/ffmpeg/stream_tap.h"
#include "base/log.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace BASS {
namespace {

using Clock = std::chrono::steady_clock;

/// One that FFmpeg has opened itself.
struct CloseIo {
    void operator()(AVIOContext* p) const { avio_close(p); }
};

/// A dictionary of options that frees itself.
class Options {
  public:
    ~Options() { av_dict_free(&m_options); }
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    void set(const char* name, const std::string& value) {
        av_dict_set(&m_options, name, value.c_str(), 0);
    }
    AVDictionary** get() { return &m_options; }

  private:
    AVDictionary* m_options = nullptr;
};

std::string schemeOf(const std::string& url) {
    std::string scheme = url.substr(0, url.find("://"));
    std::transform(scheme.begin(), scheme.end(), scheme.begin(), [](unsigned char c) {
        return static_cast<char>(std::tolower(c));
    });
    return scheme;
}

/// How many threads run; the library waits for them before it is unloaded.
struct Running {
    std::mutex mutex; ///< guards count
    std::condition_variable changed;
    int count = 0;

    void add(int by) {
        // told under the lock: whoever has seen the last one go may take this down at once
        const std::lock_guard lock(mutex);
        count += by;
        changed.notify_all();
    }
};

Running& running() {
    static Running instance;
    return instance;
}

} // namespace

class AvioSource::Session final {
  public:
    Session(Request request, std::shared_ptr<StreamTap> tap)
        : m_request(std::move(request)), m_tap(std::move(tap)) {}

    void run() {
        m_deadline = Clock::now() + m_request.answerTimeout;
        const bool isRtsp = schemeOf(m_request.url) == "rtsp";
        const int result = isRtsp ? playRtsp() : playMms();
        if (!m_isStopped)
            m_tap->ended(errorFor(result));
    }
    void stop() { m_isStopped = true; }

  private:
    static int isInterrupted(void* self) {
        const auto* const session = static_cast<const Session*>(self);
        return session->m_isStopped || Clock::now() > session->m_deadline ? 1 : 0;
    }
    [[nodiscard]] AVIOInterruptCB interrupt() { return {&Session::isInterrupted, this}; }

    void touch() {
        m_deadline = m_request.readTimeout.count() > 0 ? Clock::now() + m_request.readTimeout
                                                       : Clock::time_point::max();
    }

    int playMms();
    int playRtsp();
    int readPackets(AVFormatContext& format, int stream);
    [[nodiscard]] int errorFor(int result) const;

    const Request m_request;
    const std::shared_ptr<StreamTap> m_tap;
    std::atomic<bool> m_isStopped{false};
    Clock::time_point m_deadline;
};

/// "mms" means HTTP first, then the older protocol of its own.
int AvioSource::Session::playMms() {
    const std::string rest = m_request.url.substr(m_request.url.find("://"));
    std::vector<std::string> schemes{schemeOf(m_request.url)};
    if (schemes.front() == "mms")
        schemes = {"mmsh", "mmst"};
    std::unique_ptr<AVIOContext, CloseIo> io;
    int result = 0;
    for (const std::string& scheme : schemes) {
        Options options;
        options.set("user_agent", m_request.userAgent);
        const AVIOInterruptCB callback = interrupt();
        AVIOContext* opened = nullptr;
        result =
            avio_open2(&opened, (scheme + rest).c_str(), AVIO_FLAG_READ, &callback, options.get());
        io.reset(opened);
        if (result >= 0)
            break;
    }
    if (!io)
        return result;
    HttpHeaders headers;
    headers.lines = {"Content-Type: video/x-ms-asf"};
    m_tap->answered(headers, 0);
    std::array<std::uint8_t, 8192> bytes{};
    for (;;) {
        touch();
        const int got = avio_read_partial(io.get(), bytes.data(), static_cast<int>(bytes.size()));
        if (got <= 0)
            return got;
        m_tap->body(bytes.data(), static_cast<std::size_t>(got));
    }
}

int AvioSource::Session::playRtsp() {
    Options options;
    options.set("user_agent", m_request.userAgent);
    options.set("rtsp_flags", "prefer_tcp");
    options.set("allowed_media_types", "audio");
    AVFormatContext* context = avformat_alloc_context();
    context->interrupt_callback = interrupt();
    const int result = avformat_open_input(&context, m_request.url.c_str(), nullptr, options.get());
    if (result < 0)
        return result; // has freed the context
    const AvInput format(context);
    const int found = avformat_find_stream_info(context, nullptr);
    if (found < 0)
        return found;
    const int stream = av_find_best_stream(context, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    return stream < 0 ? AVERROR_INVALIDDATA : readPackets(*context, stream);
}

int AvioSource::Session::readPackets(AVFormatContext& format, int stream) {
    const PacketFramer framer(*format.streams[stream]->codecpar);
    if (framer.codec() == FramedCodec::Unsupported)
        return AVERROR_DECODER_NOT_FOUND;
    HttpHeaders headers;
    headers.lines = {framer.codec() == FramedCodec::Adts ? "Content-Type: audio/aac"
                                                         : "Content-Type: audio/mpeg"};
    m_tap->streamBegins(headers, 0);
    const AvPacket packet(av_packet_alloc());
    std::vector<std::uint8_t> bytes = framer.head();
    for (;;) {
        touch();
        const int result = av_read_frame(&format, packet.get());
        if (result < 0)
            return result;
        if (packet->stream_index == stream)
            framer.append(packet->data, packet->size, bytes);
        av_packet_unref(packet.get());
        if (!bytes.empty())
            m_tap->streamBytes(bytes.data(), bytes.size());
        bytes.clear();
    }
}

int AvioSource::Session::errorFor(int result) const {
    if (result == 0 || result == AVERROR_EOF)
        return BASS_OK;
    qCInfo(
        lcAudio, "connection ended url=%s result=%d", loggableUrl(m_request.url).c_str(), result);
    if (result == AVERROR(ETIMEDOUT) || Clock::now() > m_deadline)
        return BASS_ERROR_TIMEOUT; // whatever the protocol makes of being interrupted
    if (result == AVERROR_DECODER_NOT_FOUND)
        return BASS_ERROR_CODEC;
    return result == AVERROR_INVALIDDATA ? BASS_ERROR_FILEFORM : BASS_ERROR_FILEOPEN;
}

AvioSource::AvioSource(Request request, std::shared_ptr<StreamTap> tap)
    : m_session(std::make_shared<Session>(std::move(request), std::move(tap))) {}

AvioSource::~AvioSource() {
    m_session->stop();
}

bool AvioSource::takes(const std::string& url) {
    const std::string scheme = schemeOf(url);
    return scheme == "mms" || scheme == "mmsh" || scheme == "mmst" || scheme == "rtsp";
}

void AvioSource::waitForAll(std::chrono::milliseconds limit) {
    Running& all = running();
    std::unique_lock lock(all.mutex);
    all.changed.wait_for(lock, limit, [&all] { return all.count == 0; });
}

void AvioSource::start() {
    running().add(1);
    std::thread([session = m_session] {
        session->run();
        running().add(-1);
    }).detach();
}

void AvioSource::stop() {
    m_session->stop();
}

} // namespace BASS
