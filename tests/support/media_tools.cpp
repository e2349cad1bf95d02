#include "support/media_tools.h"

#include "audio/frame_header.h"
#include "support/tool_run.h"

#include <algorithm>
#include <cmath>

namespace {

/// A frame of zeros behind its header: no encoder makes it, the recorder puts it in front.
bool isSilentFrame(const std::uint8_t* frame, std::size_t bytes) {
    return std::all_of(
        frame + BASS::kMpegHeaderBytes, frame + bytes, [](std::uint8_t b) { return b == 0; });
}

const QString kFfmpeg = QStringLiteral("ffmpeg");

} // namespace

QByteArray media::encodeTone(const Tone& tone) {
    QStringList arguments{QStringLiteral("-v"),
                          QStringLiteral("error"),
                          QStringLiteral("-f"),
                          QStringLiteral("lavfi"),
                          QStringLiteral("-i"),
                          QStringLiteral("sine=frequency=%1:duration=%2:sample_rate=%3,volume=4")
                              .arg(tone.frequency)
                              .arg(tone.seconds)
                              .arg(tone.sampleRate),
                          QStringLiteral("-ac"),
                          QStringLiteral("2")};
    arguments += tone.codec;
    if (!tone.title.isEmpty())
        arguments += {QStringLiteral("-metadata"), QStringLiteral("title=") + tone.title};
    if (tone.container == QLatin1String("mp3"))
        arguments += {QStringLiteral("-write_xing"),
                      QStringLiteral("0"),
                      QStringLiteral("-id3v2_version"),
                      QStringLiteral("0")};
    arguments += {QStringLiteral("-f"), tone.container, QStringLiteral("-")};
    const ToolOutput result = runTool(kFfmpeg, arguments);
    return result.isOk ? result.out : QByteArray();
}

QString media::decodeErrors(const QString& path) {
    const ToolOutput result = runTool(kFfmpeg,
                                      {QStringLiteral("-v"),
                                       QStringLiteral("error"),
                                       QStringLiteral("-i"),
                                       path,
                                       QStringLiteral("-f"),
                                       QStringLiteral("null"),
                                       QStringLiteral("-")});
    const QString text = QString::fromUtf8(result.err).trimmed();
    return text.isEmpty() && !result.isOk ? QStringLiteral("ffmpeg failed") : text;
}

std::optional<QByteArray> media::decodedMono(const QString& path, int rate) {
    const ToolOutput result = runTool(kFfmpeg,
                                      {QStringLiteral("-v"),
                                       QStringLiteral("error"),
                                       QStringLiteral("-i"),
                                       path,
                                       QStringLiteral("-ac"),
                                       QStringLiteral("1"),
                                       QStringLiteral("-ar"),
                                       QString::number(rate),
                                       QStringLiteral("-f"),
                                       QStringLiteral("s16le"),
                                       QStringLiteral("-")});
    return result.isOk ? std::optional(result.out) : std::nullopt;
}

double media::decodedSeconds(const QString& path) {
    constexpr int kRate = 8000;
    constexpr int kBytes = 2;
    const std::optional<QByteArray> pcm = decodedMono(path, kRate);
    return pcm ? static_cast<double>(pcm->size()) / (kRate * kBytes) : -1.0;
}

QString media::probe(const QString& path, const QString& entry) {
    return QString::fromUtf8(runTool(QStringLiteral("ffprobe"),
                                     {QStringLiteral("-v"),
                                      QStringLiteral("error"),
                                      QStringLiteral("-show_entries"),
                                      entry,
                                      QStringLiteral("-of"),
                                      QStringLiteral("default=nw=1:nk=1"),
                                      path})
                                 .out)
        .trimmed();
}

QByteArray media::withoutId3(const QByteArray& file) {
    constexpr int kHeader = 10;
    if (!file.startsWith("ID3") || file.size() < kHeader)
        return file;
    int size = 0;
    for (int n = 6; n < kHeader; ++n)
        size = (size << 7) | (static_cast<unsigned char>(file.at(n)) & 0x7F);
    return file.mid(kHeader + size);
}

QByteArray media::mp3StreamBytes(const QByteArray& tagged, bool hasPreRoll) {
    const QByteArray file = withoutId3(tagged);
    const auto* data = reinterpret_cast<const std::uint8_t*>(file.constData());
    const auto size = static_cast<std::size_t>(file.size());
    const auto info = BASS::parseMpegFrame(data, size);
    if (!info)
        return {};
    const int tag = static_cast<int>(BASS::kMpegHeaderBytes + info->sideInfo);
    const QByteArray mark = file.mid(tag, 4);
    if (mark != "Info" && mark != "Xing")
        return file;
    std::size_t at = info->bytes;
    // the encoder delay stands behind flags, frames, bytes, table of contents, quality and version
    // text
    constexpr int kDelayOffset = 8 + 4 + 4 + 100 + 4 + 21;
    const int delay = (static_cast<unsigned char>(file.at(tag + kDelayOffset)) << 4) |
                      (static_cast<unsigned char>(file.at(tag + kDelayOffset + 1)) >> 4);
    constexpr int kDecoderDelay = 529;
    const int frames =
        delay == 0 ? 0
                   : static_cast<int>(
                         std::lround((delay + kDecoderDelay) / static_cast<double>(info->samples)));
    for (int n = 0; n < frames; ++n) {
        const auto frame = BASS::parseMpegFrame(data + at, size - at);
        if (!frame)
            return {};
        // nothing lies before the first file of a session: what it marks is its own, but for
        // silence
        if (!hasPreRoll && !isSilentFrame(data + at, frame->bytes))
            break;
        at += frame->bytes;
    }
    return file.mid(static_cast<int>(at));
}
