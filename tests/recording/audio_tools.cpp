#include "recording/audio_tools.h"

#include "audio/frame_header.h"
#include "support/media_tools.h"
#include "support/tool_run.h"

#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

const QTemporaryDir& folder() {
    static const QTemporaryDir dir;
    return dir;
}

QString freshName(const QString& suffix) {
    static int count = 0;
    return folder().filePath(QStringLiteral("%1.%2").arg(++count).arg(suffix));
}

/// The tones as a WAV file.
QString toneFile(const Tones& tones) {
    static QHash<QString, QString> known;
    const QString source =
        QStringLiteral("aevalsrc=0.4*sin(2*PI*(%1+170*floor(t/3))*t)+0.1*(random(0)-0.5):d=%2:s=%3")
            .arg(tones.first)
            .arg(tones.seconds)
            .arg(tones.sampleRate);
    const QString key = source + QString::number(tones.channels);
    if (!known.contains(key)) {
        const QString path = freshName(QStringLiteral("wav"));
        const ToolOutput made = runTool(QStringLiteral("ffmpeg"),
                                        {QStringLiteral("-v"),
                                         QStringLiteral("error"),
                                         QStringLiteral("-f"),
                                         QStringLiteral("lavfi"),
                                         QStringLiteral("-i"),
                                         source,
                                         QStringLiteral("-ac"),
                                         QString::number(tones.channels),
                                         path});
        EXPECT_TRUE(made.isOk) << made.err.constData();
        known.insert(key, path);
    }
    return known.value(key);
}

std::vector<float> floats(const QByteArray& bytes) {
    std::vector<float> result(static_cast<std::size_t>(bytes.size()) / sizeof(float));
    std::memcpy(result.data(), bytes.constData(), result.size() * sizeof(float));
    return result;
}

} // namespace

QByteArray encoded(const QStringList& arguments, const Tones& tones) {
    static QHash<QString, QByteArray> known;
    const QString wav = toneFile(tones);
    const QString key = wav + arguments.join(QLatin1Char(' '));
    if (!known.contains(key)) {
        const ToolOutput output = runTool(
            QStringLiteral("ffmpeg"),
            QStringList{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), wav} +
                arguments + QStringList{QStringLiteral("-")});
        EXPECT_FALSE(output.out.isEmpty()) << output.err.constData();
        known.insert(key, output.out);
    }
    return known.value(key);
}

QByteArray lameEncoded(const QStringList& arguments, const Tones& tones) {
    static QHash<QString, QByteArray> known;
    const QString wav = toneFile(tones);
    const QString key = wav + arguments.join(QLatin1Char(' '));
    if (!known.contains(key)) {
        const ToolOutput output =
            runTool(QStringLiteral("lame"),
                    QStringList{QStringLiteral("--quiet"), QStringLiteral("-t")} + arguments +
                        QStringList{wav, QStringLiteral("-")});
        EXPECT_FALSE(output.out.isEmpty()) << output.err.constData();
        known.insert(key, output.out);
    }
    return known.value(key);
}

Decoded decodedByFfmpeg(const QString& path) {
    const ToolOutput output = runTool(QStringLiteral("ffmpeg"),
                                      {QStringLiteral("-v"),
                                       QStringLiteral("error"),
                                       QStringLiteral("-i"),
                                       path,
                                       QStringLiteral("-f"),
                                       QStringLiteral("f32le"),
                                       QStringLiteral("-")});
    return {floats(output.out), QString::fromLocal8Bit(output.err)};
}

Decoded decodedByMpg123(const QString& path) {
    const ToolOutput output = runTool(QStringLiteral("mpg123"),
                                      {QStringLiteral("-q"),
                                       QStringLiteral("-e"),
                                       QStringLiteral("f32"),
                                       QStringLiteral("-s"),
                                       path});
    return {floats(output.out), QString::fromLocal8Bit(output.err)};
}

double probedSeconds(const QString& path) {
    const ToolOutput output = runTool(QStringLiteral("ffprobe"),
                                      {QStringLiteral("-v"),
                                       QStringLiteral("error"),
                                       QStringLiteral("-show_entries"),
                                       QStringLiteral("format=duration"),
                                       QStringLiteral("-of"),
                                       QStringLiteral("csv=p=0"),
                                       path});
    bool isNumber = false;
    const double seconds = output.out.trimmed().toDouble(&isNumber);
    return isNumber ? seconds : -1;
}

QByteArray fileBytes(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

QByteArray audioBytes(const QString& path) {
    return media::withoutId3(fileBytes(path));
}

QString fileWith(const QByteArray& bytes, const QString& suffix) {
    QFile file(freshName(suffix));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
    return file.fileName();
}

Difference difference(const std::vector<float>& whole, const std::vector<float>& part) {
    constexpr double kHeard = 1e-4;
    const std::size_t size = std::min(whole.size(), part.size());
    Difference result;
    for (std::size_t n = 0; n < size; ++n) {
        const double step = std::abs(static_cast<double>(whole[whole.size() - size + n]) -
                                     static_cast<double>(part[part.size() - size + n]));
        result.largest = std::max(result.largest, step);
        if (step > kHeard && result.count++ == 0)
            result.first = n;
    }
    return result;
}

std::vector<QByteArray> mpegFrames(const QByteArray& stream) {
    std::vector<QByteArray> frames;
    for (int at = 0; at < stream.size();) {
        const auto frame =
            BASS::parseMpegFrame(reinterpret_cast<const std::uint8_t*>(stream.constData()) + at,
                                 static_cast<std::size_t>(stream.size() - at));
        if (!frame || at + static_cast<int>(frame->bytes) > stream.size())
            break;
        frames.push_back(stream.mid(at, static_cast<int>(frame->bytes)));
        at += static_cast<int>(frame->bytes);
    }
    return frames;
}
