#include "e2e/program_run.h"
#include "support/media_tools.h"
#include "support/test_station.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr int kToneHz = 250; ///< of the first track; the n-th has n times as much
constexpr double kTrackSeconds = 3;
constexpr int kRate = 44100;
constexpr int kWindow = kRate / 50; ///< 20 ms

QVector<StationTrack> tones(int count) {
    QVector<StationTrack> tracks;
    for (int n = 1; n <= count; ++n)
        tracks.append({media::encodeTone({kToneHz * n,
                                          kTrackSeconds,
                                          {QStringLiteral("-c:a"),
                                           QStringLiteral("libmp3lame"),
                                           QStringLiteral("-b:a"),
                                           QStringLiteral("128k")},
                                          QStringLiteral("mp3"),
                                          {}}),
                       QByteArray("Tone - ") + QByteArray::number(n)});
    return tracks;
}

/// 16-bit mono.
std::vector<qint16> samplesOf(const QString& path) {
    const QByteArray bytes = media::decodedMono(path, kRate).value_or(QByteArray());
    std::vector<qint16> samples(static_cast<std::size_t>(bytes.size()) / sizeof(qint16));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(qint16));
    return samples;
}

/// True where a window holds this tone, told by how often it passes zero.
bool isTone(const std::vector<qint16>& samples, std::size_t from, int hz) {
    int crossings = 0;
    for (std::size_t n = from + 1; n < from + kWindow; ++n)
        crossings += (samples[n - 1] < 0) != (samples[n] < 0) ? 1 : 0;
    const double expected = 2.0 * hz * kWindow / kRate;
    return std::abs(crossings - expected) <= 3;
}

/// How long something else than the tone is heard, from one end of the file on.
int foreignMs(const std::vector<qint16>& samples, int hz, bool isAtEnd) {
    const std::size_t windows = samples.size() / kWindow;
    for (std::size_t n = 0; n < windows; ++n) {
        const std::size_t from =
            isAtEnd ? samples.size() - (n + 1) * kWindow : n * std::size_t{kWindow};
        if (isTone(samples, from, hz))
            return static_cast<int>(n) * 20;
    }
    return -1;
}

} // namespace

/// The built-in encoder of each code, all at once: each file holds its own tone alone.
TEST(Encoding, EveryCodeMakesFilesThatBeginAndEndWithTheirSong) {
    const struct {
        int code;
        const char* suffix;
        const char* codec;
        int mostForeignMs; ///< a frame of the stream and what the codec smears
    } cases[] = {{1, "mp3", "mp3", 80},
                 {2, "wma", "wmav2", 120},
                 {4, "ogg", "vorbis", 60},
                 {6, "flac", "flac", 60},
                 {8, "mp3", "aac", 80}, // the extension is deliberate
                 {10, "oga", "flac", 60}};
    TestStation station;
    StationScript script;
    script.tracks = tones(4);
    script.metaint = 1024;
    station.setScript(script);
    ASSERT_TRUE(station.listen());
    std::vector<std::unique_ptr<ProgramRun>> programs;
    for (const auto& c : cases) {
        programs.push_back(std::make_unique<ProgramRun>());
        programs.back()->setSetting(QStringLiteral("EncodingStreamType"), QString::number(c.code));
        programs.back()->setSetting(QStringLiteral("EncodingBitrate"), QStringLiteral("192"));
        programs.back()->start({QStringLiteral("/url=") + station.url(),
                                QStringLiteral("/name=Tones"),
                                QStringLiteral("/action=Record (Split)"),
                                QStringLiteral("/duration=11"),
                                QStringLiteral("/end_action=1")});
    }
    std::size_t at = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        ProgramRun& program = *programs[at++];
        ASSERT_TRUE(program.waitForEnd(60s)) << program.output().toStdString();
        const QStringList files = program.recordings();
        ASSERT_GE(files.size(), 3) << program.output().toStdString();
        for (const QString& file : files) {
            EXPECT_EQ(QFileInfo(file).suffix(), QLatin1String(c.suffix));
            EXPECT_EQ(media::probe(file, QStringLiteral("stream=codec_name")),
                      QLatin1String(c.codec));
            EXPECT_EQ(media::decodeErrors(file), QString()) << file.toStdString();
        }
        const QString& whole = files.at(1);
        const int hz = kToneHz * QFileInfo(whole).completeBaseName().rightRef(1).toInt();
        const std::vector<qint16> samples = samplesOf(whole);
        EXPECT_NEAR(static_cast<double>(samples.size()) / kRate, kTrackSeconds, 0.15);
        for (const bool isAtEnd : {false, true}) {
            const int foreign = foreignMs(samples, hz, isAtEnd);
            EXPECT_GE(foreign, 0) << whole.toStdString();
            EXPECT_LE(foreign, c.mostForeignMs) << (isAtEnd ? "end" : "beginning");
        }
    }
}
