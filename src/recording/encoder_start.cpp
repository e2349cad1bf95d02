#include "recording/encoder_start.h"

#include "base/log.h"
#include "recording/c_encoder_params.h"
#include "recording/c_recording.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace BASS {
namespace {

constexpr int kQualities = 9;   ///< MP3 settings up to it are qualities
constexpr int kSameBitrate = 8; ///< kbit/s; what stations tell is rounded
constexpr int kUsualQuality = 4;
constexpr int kBestWma = 98;
constexpr int kHighestKbit = 320;

/// The quality of Ogg Vorbis that gives about this bitrate (44.1 kHz stereo).
double vorbisQuality(int kbit) {
    constexpr std::array<std::pair<int, double>, 11> kTable{{{500, 10},
                                                             {320, 9},
                                                             {256, 8},
                                                             {224, 7},
                                                             {192, 6},
                                                             {160, 5},
                                                             {128, 4},
                                                             {112, 3},
                                                             {96, 2},
                                                             {80, 1},
                                                             {64, 0}}};
    for (const auto& [bitrate, quality] : kTable) {
        if (kbit >= bitrate)
            return quality;
    }
    return -1;
}

/// The quality of a variable bitrate that comes out near this one.
int mp3Quality(int kbit) {
    constexpr std::array<int, 9> kAverages{245, 225, 190, 175, 165, 130, 115, 100, 85};
    int quality = 0;
    for (const int average : kAverages) {
        if (kbit >= average)
            return quality;
        ++quality;
    }
    return quality;
}

const char* encoderName(int encoder) {
    switch (encoder) {
    case EncoderMp3:
        return "Lame";
    case EncoderOgg:
        return "OggEnc";
    default:
        return "FLAC";
    }
}

/// What a program needs beside its arguments to read raw samples and write to its output.
QString pipeArguments(int encoder) {
    switch (encoder) {
    case EncoderOgg:
        return QStringLiteral(" -r --quiet -o - -");
    case EncoderFlac:
    case EncoderFlacOgg:
        return QStringLiteral(
            " --force-raw-format --endian=little --sign=signed --silent --stdout -");
    default:
        return {};
    }
}

HENCODE startBuiltIn(AudioLibrary& library, const EncoderRequest& request, const QString& text) {
    const DWORD flags = BASS_UNICODE;
    const void* const options = text.utf16();
    const auto logStart = [&] {
        qCInfo(lcRecording).noquote() << encoderName(request.encoder) << text;
    };
    switch (request.encoder) {
    case EncoderMp3:
        logStart();
        return library.Encode_MP3_Start(
            request.channel, options, flags, request.proc, request.user);
    case EncoderOgg:
        logStart();
        return library.Encode_OGG_Start(
            request.channel, options, flags, request.proc, request.user);
    case EncoderFlac:
    case EncoderFlacOgg:
        logStart();
        return library.Encode_FLAC_Start(
            request.channel, options, flags, request.proc, request.user);
    case EncoderWma:
        return library.Encode_WMA_Start(
            request.channel, options, flags, request.proc, request.user);
    default:
        return 0;
    }
}

/// WMA is encoded at a rate that its encoder offers for the stream.
QString wmaArguments(AudioLibrary& library, const EncoderRequest& request) {
    CEncoderParams params = encoderParams(request.encoder, request.bitrate, request.mode);
    params.parse(request.params);
    BASS_CHANNELINFO info{};
    if (library.ChannelGetInfo(request.channel, &info) && info.freq > 0) {
        params.sampleRate = static_cast<int>(info.freq);
        params.channels = info.chans == 1 ? 1 : 2;
    }
    const auto freq = static_cast<DWORD>(params.sampleRate);
    const auto chans = static_cast<DWORD>(params.channels);
    if (params.mode == EncoderMode::VariableBitrate) {
        const DWORD* const rates = library.WMA_EncodeGetRates(freq, chans, BASS_WMA_ENCODE_VBR);
        if (const DWORD rate = nearestRate(rates, static_cast<DWORD>(params.quality)); rate != 0)
            params.quality = rate;
    } else {
        const DWORD* const rates =
            library.WMA_EncodeGetRates(freq, chans, BASS_WMA_ENCODE_STANDARD);
        if (const DWORD rate = nearestRate(rates, static_cast<DWORD>(params.bitrate())); rate != 0)
            params.setBitrate(static_cast<int>(rate));
    }
    return params.arguments();
}

QString builtInArguments(AudioLibrary& library, const EncoderRequest& request) {
    if (request.encoder == EncoderWma)
        return wmaArguments(library, request);
    return request.params.isEmpty()
               ? encoderArguments(request.encoder, request.bitrate, request.mode)
               : request.params;
}

ExternalEncoding externalEncoding(AudioLibrary& library, const EncoderRequest& request) {
    ExternalEncoding encoding;
    BASS_CHANNELINFO info{};
    if (library.ChannelGetInfo(request.channel, &info)) {
        encoding.sampleRate = static_cast<int>(info.freq);
        encoding.channels = static_cast<int>(info.chans);
        qCInfo(lcRecording) << "CBass::GetEncoderFlags ChannelInfo origres=" << info.origres;
        qCInfo(lcRecording) << "CBass::GetEncoderFlags ChannelInfo bits=" << encoding.bitsPerSample;
    }
    encoding.bitrate = request.bitrate;
    encoding.userArguments = request.userArguments;
    return encoding;
}

HENCODE startExternal(AudioLibrary& library, const EncoderRequest& request) {
    const QString program = findEncoderProgram(request.encoder);
    if (program.isEmpty())
        return 0;
    const ExternalEncoding encoding = externalEncoding(library, request);
    const QString arguments = externalArguments(request.encoder, encoding);
    const ExternalInput input = externalInput(request.encoder, encoding, arguments);
    const QString line = QDir::toNativeSeparators(program) + QLatin1Char(' ') + arguments +
                         pipeArguments(request.encoder);
    qCInfo(lcRecording).noquote() << "startEncoder external" << line;
    const DWORD header = input.hasHeader ? 0 : BASS_ENCODE_NOHEAD;
    return library.Encode_StartAs(
        request.channel,
        line.utf16(),
        {static_cast<DWORD>(input.sampleRate), static_cast<DWORD>(input.channels)},
        BASS_UNICODE | BASS_ENCODE_FP_16BIT | header,
        request.proc,
        request.user);
}

} // namespace

CEncoderParams encoderParams(int encoder, int bitrate, EncoderMode mode) {
    CEncoderParams params(encoder);
    const bool isQuality = encoder == EncoderMp3 && bitrate > 0 && bitrate <= kQualities;
    const int kbit = bitrate >= 1000 ? bitrate / 1000 : bitrate;
    const bool isVariable = mode == EncoderMode::VariableBitrate;
    if (encoder == EncoderMp3 && (isQuality || bitrate < 1 || isVariable)) {
        params.mode = EncoderMode::VariableBitrate;
        params.quality = isQuality ? bitrate : bitrate < 1 ? kUsualQuality : mp3Quality(kbit);
    } else if (encoder == EncoderOgg) {
        params.mode = EncoderMode::Quality;
        params.quality = bitrate > 0 ? vorbisQuality(kbit) : kUsualQuality;
    } else if (encoder == EncoderFlac || encoder == EncoderFlacOgg) {
        params.mode = EncoderMode::Compression;
        params.quality = 5;
    } else if (encoder == EncoderWma && isVariable) {
        params.mode = EncoderMode::VariableBitrate;
        params.quality = std::clamp(kbit * kBestWma / kHighestKbit, 1, kBestWma);
    } else {
        if (encoder == EncoderMp3)
            params.mode = mode;
        if (bitrate > 0)
            params.setBitrate(bitrate);
    }
    return params;
}

QString encoderArguments(int encoder, int bitrate, EncoderMode mode) {
    const QString text = encoderParams(encoder, bitrate, mode).arguments();
    return encoder == EncoderFlacOgg ? text + QStringLiteral(" --ogg") : text;
}

DWORD nearestRate(const DWORD* rates, DWORD wish) {
    DWORD best = 0;
    const auto distance = [wish](DWORD rate) { return rate > wish ? rate - wish : wish - rate; };
    for (; rates != nullptr && *rates != 0; ++rates) {
        if (best == 0 || distance(*rates) < distance(best))
            best = *rates;
    }
    return best;
}

QStringList encoderProgramNames(int encoder) {
    QString name = encoderProgram(encoder);
    name.chop(4); // ".exe", which only one system gives its programs
    if (name.isEmpty())
        return {};
    return name == QLatin1String("oggenc2") ? QStringList{name, QStringLiteral("oggenc")}
                                            : QStringList{name};
}

QString findEncoderProgram(int encoder) {
    const QString own = QCoreApplication::applicationDirPath();
    const QStringList beside{own, QDir(own).filePath(QStringLiteral("Encoders"))};
    for (const QString& name : encoderProgramNames(encoder)) {
        QString path = QStandardPaths::findExecutable(name, beside);
        if (path.isEmpty())
            path = QStandardPaths::findExecutable(name);
        if (!path.isEmpty())
            return path;
    }
    return {};
}

bool isSameAsEncoded(int encoder, int bitrate, DWORD channelType, int streamBitrate) {
    const int kbit = bitrate >= 1000 ? bitrate / 1000 : bitrate;
    const auto isType = [&] {
        switch (encoder) {
        case EncoderMp3:
            return channelType == BASS_CTYPE_STREAM_MP3;
        case EncoderWma:
            return channelType == BASS_CTYPE_STREAM_WMA;
        case EncoderAacPlus:
        case EncoderAac:
            return channelType == BASS_CTYPE_STREAM_AAC;
        case EncoderOgg:
            return channelType == BASS_CTYPE_STREAM_OGG;
        case EncoderFlac:
            return channelType == BASS_CTYPE_STREAM_FLAC;
        case EncoderFlacOgg:
            return channelType == BASS_CTYPE_STREAM_FLAC_OGG;
        default:
            return false;
        }
    };
    const bool hasBitrate = encoder != EncoderFlac && encoder != EncoderFlacOgg;
    return isType() && (!hasBitrate || std::abs(kbit - streamBitrate) < kSameBitrate);
}

std::variant<HENCODE, RecordingError> startEncoder(AudioLibrary& library,
                                                   const EncoderRequest& request) {
    const QString text = QDir::toNativeSeparators(builtInArguments(library, request));
    HENCODE handle = startBuiltIn(library, request, text);
    const int code = library.ErrorGetCode(); // the reason, before anything else is asked
    if (handle == 0)
        handle = startExternal(library, request);
    // where the program of the code is not installed, the library's own AAC stands in
    if (handle == 0 && request.encoder == EncoderAac)
        handle = library.Encode_AAC_Start(request.channel,
                                          QStringLiteral("-b%1").arg(request.bitrate).utf16(),
                                          BASS_UNICODE,
                                          request.proc,
                                          request.user);
    if (handle != 0)
        return handle;
    const bool isMissing = text.isEmpty() || request.encoder == EncoderAacPlus;
    const QString reason = request.errorText(code == 0 ? library.ErrorGetCode() : code);
    const QString detail =
        QStringLiteral("Output File: ") + request.outputPath + QLatin1Char(' ') + reason;
    qCWarning(lcRecording).noquote() << detail;
    if (isMissing)
        return RecordingError{RecordingErrorKind::MissingEncoder,
                              recordingErrorText(RecordingErrorKind::MissingEncoder),
                              encoderProgram(request.encoder)};
    return RecordingError{
        RecordingErrorKind::Library, libraryRecordingErrorText(reason, {}), detail};
}

void EncoderHolder::setEncoder(HENCODE encoder) {
    if (m_encoder != 0 && m_encoder != encoder)
        m_library.Encode_StopEx(m_encoder, true);
    m_encoder = encoder;
}

void EncoderHolder::setWmaEncoder(HWMENCODE encoder) {
    if (m_wmaEncoder != 0 && m_wmaEncoder != encoder)
        m_library.WMA_EncodeClose(m_wmaEncoder);
    m_wmaEncoder = encoder;
}

void EncoderHolder::stop() {
    setEncoder(0);
    setWmaEncoder(0);
}

} // namespace BASS
