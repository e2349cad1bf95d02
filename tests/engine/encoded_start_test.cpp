#include "engine/program_folder.h"
#include "engine/recording_rig.h"

#include <QDir>
#include <QFile>

#include <cmath>

// What an encoded recording holds of the stream: from where, up to where, and at which pitch.

namespace {

using BASS::RecordMode;

/// Of a pure tone, in Hz, away from the file's ends.
double toneOf(const QString& path) {
    constexpr int kRate = 44100;
    const QByteArray pcm = media::decodedMono(path, kRate).value_or(QByteArray());
    const auto* const samples = reinterpret_cast<const qint16*>(pcm.constData());
    const int frames = pcm.size() / 2;
    int rises = 0;
    for (int n = frames / 4; n < frames * 3 / 4; ++n)
        rises += samples[n - 1] < 0 && samples[n] >= 0 ? 1 : 0;
    return frames > 0 ? rises * 2.0 * kRate / frames : 0.0;
}

void keepBuffer(Rig& rig) {
    EngineSettings settings = rig.engine->settings();
    settings.recordingBufferMegabytes = 1;
    rig.engine->setSettings(settings);
}

/// Up to this title.
bool playsWithBuffer(Rig& rig, const char* title) {
    keepBuffer(rig);
    rig.play();
    return QTest::qWaitFor([&] { return rig.engine->song().title == QLatin1String(title); },
                           kLimitMs);
}

qint64 received(const Rig& rig) {
    return rig.engine->streamInfo().bytesReceived;
}

void waitForBytes(const Rig& rig, qint64 count) {
    const qint64 goal = received(rig) + count;
    ASSERT_TRUE(QTest::qWaitFor([&] { return received(rig) >= goal; }, kLimitMs));
}

/// Seconds of the titles in a cue sheet.
std::vector<double> cueTimes(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    std::vector<double> times;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines.filter(QStringLiteral("INDEX 01"))) {
        const QStringList parts = line.trimmed().section(QLatin1Char(' '), -1).split(u':');
        times.push_back(parts.value(0).toInt() * 60 + parts.value(1).toInt() +
                        parts.value(2).toInt() / 75.0);
    }
    return times;
}

} // namespace

TEST(EncodedStart, ReachesBackToTheBeginningOfTheTitle) {
    const struct {
        int encoder;
        RecordMode mode;
    } cases[] = {{6, RecordMode::Split}, {1, RecordMode::SingleSong}, {4, RecordMode::Split}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.encoder);
        constexpr double kSeconds = 4;
        Rig rig(3, kSeconds);
        ASSERT_TRUE(playsWithBuffer(rig, "Song 2"));
        waitForBytes(rig, 2 * kBytesPerSecond);
        rig.options.encoder = c.encoder;
        rig.options.mode = c.mode;
        rig.engine->startRecording(rig.options);
        rig.waitForFiles(1);
        rig.engine->stopRecording();
        rig.waitForEnd();
        EXPECT_TRUE(rig.errors.empty());
        ASSERT_FALSE(rig.files.empty());
        const QString path = rig.files[0].path;
        EXPECT_EQ(rig.files[0].song.title, QStringLiteral("Song 2"));
        EXPECT_EQ(media::decodeErrors(path), QString());
        EXPECT_NEAR(media::decodedSeconds(path), kSeconds, 0.1);
        EXPECT_NEAR(toneOf(path), 800, 4);
        EXPECT_EQ(rig.engine->playState(), PlayState::Playing);
    }
}

/// The buffer is encoded in no time, and the clock knows nothing of it.
TEST(EncodedStart, TheTimesOfABufferAreThoseOfItsAudio) {
    constexpr double kSeconds = 4;
    Rig rig(3, kSeconds);
    ASSERT_TRUE(playsWithBuffer(rig, "Song 3"));
    rig.options.encoder = 6;
    rig.options.mode = RecordMode::NoSplit;
    rig.options.hasTrackList = true;
    rig.options.trackList.format = QStringLiteral("cue");
    rig.engine->startRecording(rig.options);
    waitForBytes(rig, 6 * kBytesPerSecond); // another title begins
    rig.engine->stopRecording();
    rig.waitForEnd();
    ASSERT_EQ(rig.files.size(), 1U);
    const double whole = media::decodedSeconds(rig.files[0].path);
    EXPECT_GT(whole, 2 * kSeconds + 5);
    EXPECT_NEAR(static_cast<double>(rig.files[0].duration.count()) / 1000, whole, 0.02);
    const QStringList sheets = QDir(rig.folder.path()).entryList({QStringLiteral("*.cue")});
    ASSERT_EQ(sheets.size(), 1);
    const std::vector<double> times = cueTimes(rig.folder.filePath(sheets[0]));
    ASSERT_GE(times.size(), 5U);
    // the first one says what came before the first title
    for (std::size_t n = 2; n < times.size(); ++n)
        EXPECT_NEAR(times[n] - times[n - 1], kSeconds, 0.15) << n;
}

TEST(EncodedStart, StoppedWhileTheStationIsPausedItHoldsAllThatCame) {
    for (const bool hasBuffer : {false, true}) {
        SCOPED_TRACE(hasBuffer);
        Rig rig(1, 60);
        if (hasBuffer)
            keepBuffer(rig);
        rig.play();
        rig.options.encoder = 6;
        rig.options.mode = RecordMode::NoSplit;
        rig.engine->startRecording(rig.options);
        const qint64 began = received(rig);
        waitForBytes(rig, kBytesPerSecond);
        rig.engine->setPaused(true);
        waitForBytes(rig, 3 * kBytesPerSecond);
        const qint64 ended = received(rig);
        rig.engine->stopRecording();
        rig.waitForEnd();
        ASSERT_EQ(rig.files.size(), 1U);
        const double seconds = media::decodedSeconds(rig.files[0].path);
        EXPECT_GT(seconds, static_cast<double>(ended - began) / kBytesPerSecond - 0.1);
        EXPECT_NEAR(toneOf(rig.files[0].path), 400, 2);
    }
}

TEST(EncodedStart, EveryEncoderKeepsThePitch) {
    // programs that believe what they are told of their input
    const ProgramFolder programs;
    programs.add("enc_aacplus");
    programs.add("faac");
    qputenv("ENCODER_STEPS", "adts");
    for (const int sampleRate : {48000, 22050}) {
        Rig rig(1, 60, sampleRate);
        rig.play();
        rig.options.mode = RecordMode::NoSplit;
        for (const int encoder : {1, 2, 3, 4, 6, 8, 10}) {
            SCOPED_TRACE(sampleRate);
            SCOPED_TRACE(encoder);
            rig.files.clear();
            rig.options.encoder = encoder;
            rig.engine->startRecording(rig.options);
            waitForBytes(rig, 2 * kBytesPerSecond);
            rig.engine->stopRecording();
            rig.waitForEnd();
            ASSERT_EQ(rig.files.size(), 1U);
            EXPECT_NEAR(toneOf(rig.files[0].path), 400, 3);
        }
    }
}
