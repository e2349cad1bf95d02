#include "audio/encoder_options.h"
#include "audio/ffmpeg/codec_encoder.h"
#include "audio/ffmpeg/external_encoder.h"
#include "audio/ffmpeg/ffmpeg_library.h"
#include "audio/ffmpeg/url_text.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr DWORD kSampleMask = 14;

std::string textOf(const void* text, DWORD flags) {
    return text != nullptr ? utf8Text(text, (flags & BASS_UNICODE) != 0) : std::string();
}

int flacBits(DWORD flags, const BASS_CHANNELINFO& info) {
    constexpr int kCd = 16;
    constexpr int kStudio = 24;
    const DWORD wanted = flags & kSampleMask;
    const bool isFine = wanted == BASS_ENCODE_FP_24BIT ||
                        (wanted == BASS_ENCODE_FP_AUTO && info.origres > DWORD{kCd});
    return isFine ? kStudio : kCd;
}

/// The file is made in the source's format; more than the device's rate is not there to be encoded.
CodecEncoder::Setup codecSetup(EncoderKind kind,
                               const EncoderOptions& options,
                               const BASS_CHANNELINFO& info,
                               int deviceRate) {
    CodecEncoder::Setup setup;
    setup.kind = kind;
    setup.options = options;
    setup.inputRate = deviceRate;
    const int sourceRate = info.freq > 0 ? static_cast<int>(info.freq) : deviceRate;
    setup.rate = options.sampleRate > 0 ? options.sampleRate : std::min(sourceRate, deviceRate);
    setup.channels = options.channels > 0 ? options.channels : info.chans == 1 ? 1 : 2;
    return setup;
}

} // namespace

HENCODE FfmpegLibrary::Encode_MP3_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startCodec(EncoderKind::Mp3, {handle, options, flags, proc, user});
}

HENCODE FfmpegLibrary::Encode_OGG_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startCodec(EncoderKind::Vorbis, {handle, options, flags, proc, user});
}

HENCODE FfmpegLibrary::Encode_FLAC_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startCodec(EncoderKind::Flac, {handle, options, flags, proc, user});
}

HENCODE FfmpegLibrary::Encode_AAC_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startCodec(EncoderKind::Aac, {handle, options, flags, proc, user});
}

HENCODE FfmpegLibrary::Encode_WMA_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startCodec(EncoderKind::Wma, {handle, options, flags, proc, user});
}

HENCODE FfmpegLibrary::startCodec(EncoderKind kind, const EncoderArguments& arguments) {
    const Channel channel = find(arguments.handle);
    if (!channel)
        return 0;
    const auto options = parseEncoderOptions(kind, textOf(arguments.options, arguments.flags));
    if (!options) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    BASS_CHANNELINFO info{};
    channel->info(info);
    CodecEncoder::Setup setup = codecSetup(kind, *options, info, m_rate.load());
    setup.bits = flacBits(arguments.flags, info);
    setup.canRewrite = m_rewriteProc.load() != nullptr;
    return startEncoder(arguments, [setup](PcmEncoder::Write write) {
        return std::make_unique<CodecEncoder>(setup, std::move(write));
    });
}

HENCODE FfmpegLibrary::Encode_Start(
    DWORD handle, const void* commandLine, DWORD flags, ENCODEPROC* proc, void* user) {
    return Encode_StartAs(handle, commandLine, {}, flags, proc, user);
}

HENCODE FfmpegLibrary::Encode_StartAs(DWORD handle,
                                      const void* commandLine,
                                      const ProgramInput& input,
                                      DWORD flags,
                                      ENCODEPROC* proc,
                                      void* user) {
    const Channel channel = find(handle);
    if (!channel)
        return 0;
    BASS_CHANNELINFO info{};
    channel->info(info);
    ExternalEncoder::Setup setup;
    setup.commandLine = QString::fromStdString(textOf(commandLine, flags));
    setup.inputRate = m_rate.load();
    setup.rate = info.freq > 0 ? static_cast<int>(info.freq) : setup.inputRate;
    setup.channels = info.chans == 1 ? 1 : 2;
    if (input.rate > 0)
        setup.rate = static_cast<int>(input.rate);
    if (input.channels > 0)
        setup.channels = static_cast<int>(input.channels);
    setup.isFloat = (channel->flags() & BASS_SAMPLE_FLOAT) != 0 &&
                    (flags & kSampleMask) != BASS_ENCODE_FP_16BIT;
    setup.hasHeader = (flags & BASS_ENCODE_NOHEAD) == 0;
    return startEncoder({handle, commandLine, flags, proc, user}, [setup](PcmEncoder::Write write) {
        return std::make_unique<ExternalEncoder>(setup, std::move(write));
    });
}

/// Running, or waiting for its first audio, with its handle and its place in the table; null with
/// the reason in ErrorGetCode().
std::shared_ptr<Encoder> FfmpegLibrary::makeEncoder(const EncoderArguments& arguments,
                                                    MakeEncoder make) {
    if (arguments.proc == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return nullptr;
    }
    Encoder::Setup setup;
    setup.proc = arguments.proc;
    setup.rewrite = m_rewriteProc.load();
    setup.user = arguments.user;
    setup.rate = m_rate.load();
    setup.make = std::move(make);
    setup.ended = [this] { m_signal.post(); };
    {
        const std::lock_guard lock(m_mutex);
        setup.handle = m_nextHandle++;
    }
    auto encoder = std::make_shared<Encoder>(std::move(setup));
    encoder->setChannel(arguments.handle);
    int error = BASS_OK;
    if (arguments.isProven)
        encoder->startWhenNeeded();
    else
        error = encoder->start();
    if (error != BASS_OK) {
        fail(error);
        return nullptr;
    }
    const std::lock_guard lock(m_mutex);
    m_encoders.emplace(encoder->handle(), encoder);
    succeed();
    return encoder;
}

HENCODE FfmpegLibrary::startEncoder(const EncoderArguments& arguments, MakeEncoder make) {
    const std::lock_guard lock(m_encodeMutex);
    const Channel channel = find(arguments.handle); // freed only under the same lock
    if (!channel || channel->pcmTap().isClosed())
        return 0;
    const auto encoder = makeEncoder(arguments, std::move(make));
    if (!encoder)
        return 0;
    channel->pcmTap().attach(encoder, (arguments.flags & BASS_ENCODE_PAUSE) != 0);
    return encoder->handle();
}

/// Comes from the network thread: nothing here waits for a thread that decodes or encodes.
HENCODE FfmpegLibrary::Encode_CutAt(
    HENCODE old, QWORD position, DWORD delayMs, ENCODEPROC* proc, void* user) {
    const std::lock_guard lock(m_encodeMutex);
    const auto before = findEncoder(old);
    const Channel channel = before ? find(before->channel()) : nullptr;
    if (!channel || !before->isRunning()) {
        fail(BASS_ERROR_HANDLE);
        return 0;
    }
    const auto next =
        makeEncoder({channel->handle(), nullptr, 0, proc, user, true}, before->setup().make);
    if (!next)
        return 0;
    const auto rate = static_cast<std::uint64_t>(m_rate.load());
    if (!channel->pcmTap().cut(*before, next, {position, rate * delayMs / 1000})) {
        const std::lock_guard tables(m_mutex);
        m_encoders.erase(next->handle());
        fail(BASS_ERROR_ALREADY);
        return 0;
    }
    m_signal.post(); // the dispatcher settles it
    return next->handle();
}

double FfmpegLibrary::Encode_GetSeconds(HENCODE handle) {
    const auto encoder = findEncoder(handle);
    return encoder ? static_cast<double>(encoder->encodedFrames()) / encoder->setup().rate : -1;
}

double FfmpegLibrary::Encode_GetSecondsAt(HENCODE handle, QWORD position) {
    const auto encoder = findEncoder(handle);
    const Channel channel = encoder ? find(encoder->channel()) : nullptr;
    const auto frame = channel ? channel->pcmTap().encodedFrame(*encoder, position) : std::nullopt;
    return frame ? static_cast<double>(*frame) / encoder->setup().rate : -1;
}

std::shared_ptr<Encoder> FfmpegLibrary::findEncoder(HENCODE handle) const {
    const std::lock_guard lock(m_mutex);
    const auto place = m_encoders.find(handle);
    return place != m_encoders.end() ? place->second : nullptr;
}

std::vector<std::shared_ptr<Encoder>> FfmpegLibrary::encodersOf(DWORD handle) const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::shared_ptr<Encoder>> result;
    for (const auto& [number, encoder] : m_encoders)
        if (number == handle || encoder->channel() == handle)
            result.push_back(encoder);
    return result;
}

DWORD FfmpegLibrary::Encode_IsActive(DWORD handle) {
    DWORD result = BASS_ACTIVE_STOPPED;
    for (const auto& encoder : encodersOf(handle)) {
        if (!encoder->isRunning())
            continue;
        const Channel channel = find(encoder->channel());
        if (!channel || !channel->pcmTap().isPaused(*encoder))
            return BASS_ACTIVE_PLAYING;
        result = BASS_ACTIVE_PAUSED;
    }
    return result;
}

bool FfmpegLibrary::Encode_SetPaused(HENCODE handle, bool isPaused) {
    const auto encoder = findEncoder(handle);
    const Channel channel = encoder ? find(encoder->channel()) : nullptr;
    return channel && channel->pcmTap().setPaused(*encoder, isPaused) ? succeed()
                                                                      : fail(BASS_ERROR_HANDLE);
}

bool FfmpegLibrary::Encode_StopEx(DWORD handle, bool queue) {
    const auto encoders = encodersOf(handle);
    for (const auto& encoder : encoders) {
        const Channel channel = find(encoder->channel());
        if (!channel || !channel->pcmTap().stop(*encoder, queue))
            encoder->finish(queue); // its turn is over already, or its channel
    }
    return encoders.empty() ? fail(BASS_ERROR_HANDLE) : succeed();
}

bool FfmpegLibrary::Encode_SetChannel(HENCODE handle, DWORD channel) {
    const std::lock_guard lock(m_encodeMutex);
    const auto encoder = findEncoder(handle);
    const Channel from = encoder ? find(encoder->channel()) : nullptr;
    const Channel to = find(channel);
    if (!from || !to || to->pcmTap().isClosed() || !encoder->isRunning())
        return fail(BASS_ERROR_HANDLE);
    const bool wasPaused = from->pcmTap().isPaused(*encoder);
    if (!from->pcmTap().release(*encoder))
        return fail(BASS_ERROR_HANDLE);
    encoder->setChannel(channel);
    to->pcmTap().attach(encoder, wasPaused);
    return succeed();
}

/// Those of a channel that goes: they get what has been decoded, and have ended when it returns.
void FfmpegLibrary::endEncoders(StreamChannel& channel) {
    std::vector<std::shared_ptr<Encoder>> encoders;
    {
        const std::lock_guard lock(m_encodeMutex);
        channel.pcmTap().close();
        encoders = encodersOf(channel.handle());
    }
    for (const auto& encoder : encoders)
        encoder->wait();
    sweepEncoders();
}

void FfmpegLibrary::sweepEncoders() {
    std::vector<std::shared_ptr<Encoder>> ended;
    {
        const std::lock_guard lock(m_mutex);
        for (auto place = m_encoders.begin(); place != m_encoders.end();) {
            const auto here = place++;
            if (!here->second->hasEnded())
                continue;
            ended.push_back(here->second);
            m_encoders.erase(here);
        }
    }
    for (const auto& encoder : ended)
        if (const Channel channel = find(encoder->channel()))
            channel->pcmTap().stop(*encoder, false);
}

const DWORD* FfmpegLibrary::WMA_EncodeGetRates(DWORD freq, DWORD chans, DWORD flags) {
    static constexpr DWORD kRates[] = {
        32000, 48000, 64000, 80000, 96000, 128000, 160000, 192000, 0};
    static constexpr DWORD kMonoRates[] = {24000, 32000, 48000, 64000, 80000, 96000, 0};
    static constexpr DWORD kLowRates[] = {24000, 32000, 48000, 0};
    static constexpr DWORD kQualities[] = {10, 25, 50, 75, 90, 98, 0};
    constexpr DWORD kLow = 32000;
    constexpr DWORD kHighest = 48000;
    if (freq < 8000 || freq > kHighest || chans < 1 || chans > 2) {
        fail(BASS_ERROR_NOTAVAIL);
        return nullptr;
    }
    succeed();
    if ((flags & BASS_WMA_ENCODE_VBR) != 0)
        return kQualities;
    return freq < kLow ? kLowRates : chans == 1 ? kMonoRates : kRates;
}

HWMENCODE FfmpegLibrary::WMA_EncodeOpenFile(
    DWORD freq, DWORD chans, DWORD flags, DWORD bitrate, const void* file) {
    constexpr DWORD kBestQuality = 100;
    if (file == nullptr || WMA_EncodeGetRates(freq, chans, flags) == nullptr) {
        fail(file == nullptr ? BASS_ERROR_ILLPARAM : BASS_ERROR_NOTAVAIL);
        return 0;
    }
    WmaFile::Format format{
        static_cast<int>(freq), static_cast<int>(chans), (flags & BASS_SAMPLE_FLOAT) != 0, {}};
    if (bitrate > kBestQuality) {
        format.options.bitrate = static_cast<int>(bitrate);
    } else {
        format.options.mode = EncoderOptions::Mode::Variable;
        format.options.quality = std::max(bitrate, DWORD{1});
    }
    auto encoder = std::make_shared<WmaFile>(filePath(file, (flags & BASS_UNICODE) != 0), format);
    const int error = encoder->open();
    if (error != BASS_OK) {
        fail(error);
        return 0;
    }
    const std::lock_guard lock(m_mutex);
    const HWMENCODE handle = m_nextHandle++;
    m_wmaFiles.emplace(handle, std::move(encoder));
    succeed();
    return handle;
}

bool FfmpegLibrary::WMA_EncodeWrite(HWMENCODE handle, const void* buffer, DWORD length) {
    std::shared_ptr<WmaFile> file;
    {
        const std::lock_guard lock(m_mutex);
        const auto place = m_wmaFiles.find(handle);
        if (place != m_wmaFiles.end())
            file = place->second;
    }
    if (!file)
        return fail(BASS_ERROR_HANDLE);
    return file->write(buffer, length) ? succeed() : fail(BASS_ERROR_UNKNOWN);
}

bool FfmpegLibrary::WMA_EncodeClose(HWMENCODE handle) {
    std::shared_ptr<WmaFile> file;
    {
        const std::lock_guard lock(m_mutex);
        const auto place = m_wmaFiles.find(handle);
        if (place == m_wmaFiles.end())
            return fail(BASS_ERROR_HANDLE);
        file = std::move(place->second);
        m_wmaFiles.erase(place);
    }
    return file->close() ? succeed() : fail(BASS_ERROR_UNKNOWN);
}

} // namespace BASS
