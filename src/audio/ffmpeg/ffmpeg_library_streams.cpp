#include "audio/ffmpeg/avio_source.h"
#include "audio/ffmpeg/ffmpeg_library.h"
#include "audio/ffmpeg/hls_source.h"
#include "audio/ffmpeg/http_source.h"
#include "audio/ffmpeg/mp4_source.h"
#include "audio/ffmpeg/url_text.h"

#include <algorithm>

namespace BASS {
namespace {

// Which formats each create function takes: what the engine's fallbacks rely on.
bool takesGeneric(StreamFormat format) {
    switch (format) {
    case StreamFormat::Mpeg:
    case StreamFormat::Adts:
    case StreamFormat::OggVorbis:
    case StreamFormat::OggOpus:
    case StreamFormat::OggFlac:
    case StreamFormat::Wav:
    case StreamFormat::Aiff:
        return true;
    default:
        return false;
    }
}

bool takesMp4(StreamFormat format) {
    return format == StreamFormat::Mp4 || format == StreamFormat::Adts;
}

bool takesAac(StreamFormat format) {
    return format == StreamFormat::Adts;
}

bool takesFlac(StreamFormat format) {
    return format == StreamFormat::Flac || format == StreamFormat::OggFlac;
}

bool takesOpus(StreamFormat format) {
    return format == StreamFormat::OggOpus;
}

bool takesWma(StreamFormat format) {
    return format == StreamFormat::Asf;
}

/// What mms and rtsp carry.
bool takesForeign(StreamFormat format) {
    return format == StreamFormat::Asf || format == StreamFormat::Mpeg ||
           format == StreamFormat::Adts || format == StreamFormat::Flac;
}

/// What segments hold.
bool takesSegments(StreamFormat format) {
    return format == StreamFormat::Mpeg || format == StreamFormat::Adts ||
           format == StreamFormat::Flac;
}

/// A file is received so far ahead of what is heard.
constexpr std::size_t kSmallestBuffer = 512U * 1024U;
constexpr std::size_t kLargestBuffer = 8U * 1024U * 1024U;
constexpr std::size_t kBytesPerMs = 192; // lossless audio with room to spare
/// A live stream of segments begins with three of them at once, an MP4 file with its index.
constexpr std::size_t kAheadBuffer = 8U * 1024U * 1024U;

} // namespace

HSTREAM FfmpegLibrary::StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl({url, offset, flags, proc, user}, takesGeneric);
}

HSTREAM FfmpegLibrary::MP4_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl({url, offset, flags, proc, user}, takesMp4);
}

HSTREAM FfmpegLibrary::FLAC_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl({url, offset, flags, proc, user}, takesFlac);
}

HSTREAM FfmpegLibrary::HLS_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl({url, offset, flags, proc, user}, takesSegments);
}

HSTREAM FfmpegLibrary::OPUS_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl({url, offset, flags, proc, user}, takesOpus);
}

HSTREAM FfmpegLibrary::WMA_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl({url, offset, flags, proc, user}, takesWma);
}

HSTREAM FfmpegLibrary::StreamCreateFile(const void* file, DWORD flags) {
    return createFile(file, flags, takesGeneric);
}

HSTREAM FfmpegLibrary::AAC_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(file, flags, takesAac);
}

HSTREAM FfmpegLibrary::WMA_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(file, flags, takesWma);
}

HSTREAM FfmpegLibrary::OPUS_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(file, flags, takesOpus);
}

HSTREAM FfmpegLibrary::FLAC_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(file, flags, takesFlac);
}

HSTREAM FfmpegLibrary::MP4_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(file, flags, takesMp4);
}

HSTREAM FfmpegLibrary::HLS_StreamCreateFile(const void* file, DWORD flags) {
    if (file == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    const std::u16string url = fileUrl(filePath(file, (flags & BASS_UNICODE) != 0));
    return createUrl({url.c_str(), 0, flags | BASS_UNICODE, nullptr, nullptr, true}, takesSegments);
}

FfmpegLibrary::Channel FfmpegLibrary::newChannel(DWORD flags) {
    StreamChannel::Context context;
    context.flags = flags;
    context.rate = m_rate.load();
    context.mixer = &m_mixer;
    context.signal = &m_signal;
    const std::lock_guard lock(m_mutex);
    context.handle = m_nextHandle++;
    auto channel = std::make_shared<StreamChannel>(context);
    channel->effects().set(m_effects);
    return channel;
}

std::size_t FfmpegLibrary::bufferBytes() const {
    const std::size_t wanted = std::size_t{GetConfig(BASS_CONFIG_NET_BUFFER)} * kBytesPerMs;
    return std::clamp(wanted, kSmallestBuffer, kLargestBuffer);
}

HttpRequest FfmpegLibrary::requestFor(const UrlArguments& arguments) const {
    HttpRequest request;
    request.url = requestUrl(utf8Text(arguments.url, (arguments.flags & BASS_UNICODE) != 0));
    request.offset = arguments.offset;
    request.isFileAllowed = arguments.isFile;
    request.answerTimeout = std::chrono::milliseconds(GetConfig(BASS_CONFIG_NET_TIMEOUT));
    request.readTimeout = std::chrono::milliseconds(GetConfig(BASS_CONFIG_NET_READTIMEOUT));
    const std::lock_guard lock(m_mutex);
    request.userAgent = m_userAgent;
    request.proxy = m_proxy;
    return request;
}

std::shared_ptr<StreamSource>
FfmpegLibrary::makeSource(HttpRequest request, std::shared_ptr<StreamTap> tap, Accepts* accepts) {
    if (accepts == takesSegments)
        return std::make_shared<HlsSource>(*m_net, std::move(request), std::move(tap));
    if (accepts == takesMp4)
        return std::make_shared<Mp4Source>(*m_net, std::move(request), std::move(tap));
    if (accepts == takesForeign)
        return std::make_shared<AvioSource>(
            AvioSource::Request{
                request.url, request.userAgent, request.answerTimeout, request.readTimeout},
            std::move(tap));
    return std::make_shared<HttpSource>(*m_net, std::move(request), std::move(tap));
}

HSTREAM FfmpegLibrary::createUrl(const UrlArguments& arguments, Accepts* accepts) {
    if (!m_output.isOpen() || arguments.url == nullptr) {
        fail(m_output.isOpen() ? BASS_ERROR_ILLPARAM : BASS_ERROR_INIT);
        return 0;
    }
    const Channel channel = newChannel(arguments.flags);
    {
        const std::lock_guard lock(m_mutex);
        m_creating.emplace(arguments.user, channel);
    }
    StreamTap::Callbacks callbacks;
    callbacks.download = arguments.proc;
    callbacks.title = arguments.isFile ? nullptr : m_titleProc.load();
    callbacks.user = arguments.user;
    callbacks.wantsHeaders = (arguments.flags & BASS_STREAM_STATUS) != 0;
    HttpRequest request = requestFor(arguments);
    if (accepts == takesWma && AvioSource::takes(request.url))
        accepts = takesForeign;
    const auto make = [&](std::shared_ptr<StreamTap> tap) {
        return makeSource(std::move(request), std::move(tap), accepts);
    };
    const bool isAhead = accepts == takesSegments || accepts == takesMp4;
    const std::size_t bound = isAhead ? kAheadBuffer : bufferBytes();
    channel->openUrl(make, std::move(callbacks), bound, accepts);
    const HSTREAM handle = finishCreate(channel);

    const std::lock_guard lock(m_mutex);
    const auto [from, to] = m_creating.equal_range(arguments.user);
    m_creating.erase(
        std::find_if(from, to, [&channel](const auto& entry) { return entry.second == channel; }));
    return handle;
}

HSTREAM FfmpegLibrary::createFile(const void* file, DWORD flags, Accepts* accepts) {
    if (!m_output.isOpen() || file == nullptr) {
        fail(m_output.isOpen() ? BASS_ERROR_ILLPARAM : BASS_ERROR_INIT);
        return 0;
    }
    const Channel channel = newChannel(flags);
    if (!channel->openFile(filePath(file, (flags & BASS_UNICODE) != 0), accepts)) {
        fail(BASS_ERROR_FILEOPEN);
        return 0;
    }
    return finishCreate(channel);
}

HSTREAM FfmpegLibrary::StreamCreateRecordingDevice(int device, DWORD flags) {
    if (!m_output.isOpen()) {
        fail(BASS_ERROR_INIT);
        return 0;
    }
    auto input = m_output.openRecordingDevice(device, m_rate.load());
    if (!input) {
        fail(BASS_ERROR_DEVICE);
        return 0;
    }
    const Channel channel = newChannel(flags);
    channel->openCapture(std::move(input));
    return finishCreate(channel);
}

HSTREAM FfmpegLibrary::StreamCreatePush(const void* data, QWORD length, QWORD begin) {
    const Channel channel = newChannel(0);
    channel->openPush(begin);
    channel->put(data, static_cast<std::size_t>(length));
    return finishCreate(channel, std::chrono::seconds(1));
}

FfmpegLibrary::Channel FfmpegLibrary::findPushed(HSTREAM handle) const {
    const Channel channel = find(handle);
    return channel && channel->isPushed() ? channel : nullptr;
}

bool FfmpegLibrary::StreamPutData(HSTREAM handle, const void* data, QWORD length) {
    const Channel channel = findPushed(handle);
    if (!channel)
        return false;
    channel->put(data, static_cast<std::size_t>(length));
    return true;
}

bool FfmpegLibrary::StreamPutGap(HSTREAM handle) {
    const Channel channel = findPushed(handle);
    if (!channel)
        return false;
    channel->putGap();
    return true;
}

bool FfmpegLibrary::StreamPutEnd(HSTREAM handle) {
    const Channel channel = findPushed(handle);
    if (!channel)
        return false;
    channel->putEnd();
    return true;
}

HSTREAM FfmpegLibrary::finishCreate(const Channel& channel, std::chrono::seconds limit) {
    const int error = channel->waitReady(limit);
    if (error != BASS_OK) {
        channel->close();
        fail(error);
        return 0;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_channels.emplace(channel->handle(), channel);
    }
    m_signal.post(); // for what happened before the dispatcher knew the channel
    succeed();
    return channel->handle();
}

bool FfmpegLibrary::StreamCancel(void* user) {
    const std::lock_guard lock(m_mutex);
    const auto [from, to] = m_creating.equal_range(user);
    std::for_each(from, to, [](const auto& entry) { entry.second->cancel(); });
    return from != to ? succeed() : fail(BASS_ERROR_NOTAVAIL);
}

bool FfmpegLibrary::StreamFree(HSTREAM handle) {
    return freeChannel(handle);
}

QWORD FfmpegLibrary::StreamGetFilePosition(HSTREAM handle, DWORD mode) {
    constexpr QWORD kFailed = ~QWORD{0};
    const Channel channel = find(handle);
    if (!channel)
        return kFailed;
    const QWORD position = channel->filePosition(mode);
    if (position == kFailed)
        fail(BASS_ERROR_NOTAVAIL);
    return position;
}

} // namespace BASS
