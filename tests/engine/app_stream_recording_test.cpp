#include "engine/engine_events.h"
#include "engine/recording_rig.h"

#include <QDir>
#include <QFileInfo>

namespace {

using BASS::RecordMode;

/// What the window gets of cuts.
class CutListener final : public QObject {
  public:
    QStringList songs;

    bool event(QEvent* event) override {
        if (event->type() != static_cast<QEvent::Type>(BASS::kSplitEvent))
            return QObject::event(event);
        songs << static_cast<BASS::SplitEvent*>(event)->song().title;
        return true;
    }
};

} // namespace

TEST(AppStreamRecording, EncodersMakeOneFileATitleWithoutLosingASample) {
    const struct {
        int encoder;
        const char* suffix;
        const char* codec;
        double tolerance; ///< seconds: padding of the codec that no length tells
    } cases[] = {{1, "mp3", "mp3", 0.03},
                 {4, "ogg", "vorbis", 0.002},
                 {6, "flac", "flac", 0.0},
                 {10, "oga", "flac", 0.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.suffix);
        constexpr double kSeconds = 2.5;
        Rig rig(3, kSeconds);
        rig.play();
        rig.options.encoder = c.encoder;
        rig.options.hasTags = true;
        rig.engine->startRecording(rig.options);
        EXPECT_TRUE(rig.engine->isRecording());
        rig.waitForFiles(3);
        rig.engine->stopRecording();
        rig.waitForEnd();
        EXPECT_TRUE(rig.errors.empty());
        ASSERT_GE(rig.files.size(), 4U);
        for (const BASS::RecordedFile& file : rig.files) {
            EXPECT_EQ(QFileInfo(file.path).suffix(), QLatin1String(c.suffix));
            EXPECT_EQ(media::decodeErrors(file.path), QString());
            EXPECT_EQ(media::probe(file.path, QStringLiteral("stream=codec_name")),
                      QLatin1String(c.codec));
        }
        // a whole title between two cuts is as long as it was served; frames of the stream are 26
        // ms
        const BASS::RecordedFile& whole = rig.files[1];
        EXPECT_NEAR(media::decodedSeconds(whole.path), kSeconds, 0.08 + c.tolerance);
        EXPECT_TRUE(QFileInfo(whole.path).fileName().startsWith(QStringLiteral("Artist - Song ")))
            << qPrintable(whole.path);
        const QString other = c.suffix == std::string("ogg") || c.suffix == std::string("oga")
                                  ? QStringLiteral("stream_tags=artist")
                                  : QStringLiteral("format_tags=artist");
        EXPECT_EQ(media::probe(whole.path, other), QStringLiteral("Artist"));
    }
}

TEST(AppStreamRecording, SingleSongEndsWithItsEncoder) {
    Rig rig;
    rig.play();
    rig.options.encoder = 6;
    rig.options.mode = RecordMode::SingleSong;
    rig.engine->startRecording(rig.options);
    rig.waitForEnd();
    EXPECT_TRUE(rig.errors.empty());
    ASSERT_EQ(rig.files.size(), 1U);
    EXPECT_EQ(media::decodeErrors(rig.files[0].path), QString());
    EXPECT_EQ(QDir(rig.folder.path()).entryList(QDir::Files).size(), 1);
}

TEST(AppStreamRecording, RecordingAskedForBeforeTheFirstByteIsEncoded) {
    Rig rig;
    rig.engine->play(BASS::stationFromAddress(rig.m_station.url()));
    rig.options.encoder = 1;
    rig.options.mode = RecordMode::NoSplit;
    rig.engine->startRecording(rig.options);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return QFileInfo(rig.folder.filePath(QStringLiteral("Tones.mp3"))).size() > 20000; },
        kLimitMs));
    rig.engine->stop();
    rig.waitForEnd();
    ASSERT_EQ(rig.files.size(), 1U);
    EXPECT_EQ(media::decodeErrors(rig.files[0].path), QString());
}

/// The station stays away longer than what had come of it is heard. Recording is asked for before
/// the first byte, while it plays, or while it is away.
TEST(AppStreamRecording, EncodedRecordingGoesOnOverALongOutage) {
    for (const int asked : {0, 1, 2}) {
        SCOPED_TRACE(asked);
        Rig rig;
        rig.script.burst = kBytesPerSecond / 2;
        rig.script.continues = true;
        rig.script.closeAt = 3 * kBytesPerSecond;
        rig.m_station.setScript(rig.script);
        rig.options.encoder = 6;
        rig.options.mode = RecordMode::NoSplit;
        if (asked == 0)
            rig.engine->play(BASS::stationFromAddress(rig.m_station.url()));
        else
            rig.play();
        if (asked < 2)
            rig.engine->startRecording(rig.options);
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return rig.engine->playState() == PlayState::Reconnecting; }, kLimitMs));
        rig.m_station.stopListening();
        QTest::qWait(2500);
        if (asked == 2)
            rig.engine->startRecording(rig.options);
        rig.script.closeAt = -1;
        rig.m_station.setScript(rig.script);
        ASSERT_TRUE(rig.m_station.listen());
        ASSERT_TRUE(QTest::qWaitFor([&] { return rig.engine->playState() == PlayState::Playing; },
                                    kLimitMs));
        QTest::qWait(2500);
        rig.engine->stop();
        rig.waitForEnd();
        EXPECT_TRUE(rig.errors.empty());
        ASSERT_EQ(rig.files.size(), 1U);
        EXPECT_EQ(media::decodeErrors(rig.files[0].path), QString());
        EXPECT_GT(media::decodedSeconds(rig.files[0].path), asked < 2 ? 4.5 : 1.5);
        EXPECT_EQ(rig.files[0].comment.contains(QStringLiteral("lost")), asked < 2);
    }
}

TEST(AppStreamRecording, MissingEncoderIsTold) {
    Rig rig;
    rig.play();
    for (const int encoder : {3, 5, 7}) {
        rig.errors.clear();
        rig.options.encoder = encoder;
        rig.engine->startRecording(rig.options);
        rig.waitForEnd();
        ASSERT_EQ(rig.errors.size(), 1U) << encoder;
        EXPECT_EQ(rig.errors[0].kind, BASS::RecordingErrorKind::MissingEncoder);
        EXPECT_EQ(rig.errors[0].message.toStdString(), "Recording failed - Missing encoder");
    }
    EXPECT_TRUE(rig.files.empty());
}

TEST(AppStreamRecording, StreamThatIsAlreadyWhatIsWantedStaysAsItIs) {
    Rig rig;
    rig.play();
    rig.options.encoder = 1;
    rig.options.isSameKept = true;
    rig.options.mode = RecordMode::NoSplit;
    rig.options.isMp3CutByteExact = true;
    rig.engine->startRecording(rig.options);
    QSignalSpy progress(&rig.engine->recorder(), &BASS::StreamRecorder::sig_progress);
    EXPECT_TRUE(progress.wait(kLimitMs));
    rig.engine->stop();
    rig.waitForEnd();
    ASSERT_EQ(rig.files.size(), 1U);
    QFile file(rig.files[0].path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(rig.m_station.served().first().audio.contains(file.readAll()));
}

TEST(AppStreamRecording, CutsAreToldAtOnceOrAfterTheStationsDelay) {
    for (const unsigned delayMs : {0U, 150U, 250U}) {
        Rig rig(3, 2);
        CutListener listener;
        rig.engine->setMainObject(&listener);
        rig.play(delayMs);
        rig.engine->startRecording(rig.options);
        EXPECT_TRUE(QTest::qWaitFor([&] { return listener.songs.size() >= 2; }, kLimitMs))
            << delayMs;
        EXPECT_TRUE(listener.songs.value(0).startsWith(QStringLiteral("Song "))) << delayMs;
        EXPECT_NE(listener.songs.value(0), listener.songs.value(1));
        rig.engine->stop();
    }
}

TEST(AppStreamRecording, PausedPartsAreLeftOut) {
    for (const int encoder : {0, 6}) {
        SCOPED_TRACE(encoder);
        Rig rig(3, 60);
        QSignalSpy paused(rig.engine.get(), &AppStream::sig_recordingPaused);
        rig.engine->setRecordingPaused(true);
        EXPECT_FALSE(rig.engine->isRecordingPaused()); // nothing to pause
        rig.play();
        rig.options.encoder = encoder;
        rig.options.mode = RecordMode::NoSplit;
        rig.engine->startRecording(rig.options);
        QSignalSpy progress(&rig.engine->recorder(), &BASS::StreamRecorder::sig_progress);
        const auto recordMore = [&progress] {
            progress.clear();
            return QTest::qWaitFor([&progress] { return progress.size() >= 8; }, kLimitMs);
        };
        EXPECT_TRUE(recordMore());
        rig.engine->setRecordingPaused(true);
        const qint64 received = rig.engine->streamInfo().bytesReceived;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return rig.engine->streamInfo().bytesReceived > received + 4 * kBytesPerSecond; },
            kLimitMs));
        rig.engine->setRecordingPaused(false);
        EXPECT_TRUE(recordMore());
        const qint64 all = rig.engine->streamInfo().bytesReceived;
        rig.engine->stopRecording();
        rig.waitForEnd();
        EXPECT_EQ(paused.size(), 2);
        ASSERT_EQ(rig.files.size(), 1U);
        EXPECT_EQ(media::decodeErrors(rig.files[0].path), QString());
        const double seconds = media::decodedSeconds(rig.files[0].path);
        EXPECT_GT(seconds, 2.0);
        EXPECT_LT(seconds, static_cast<double>(all) / kBytesPerSecond - 3.5);
    }
}

TEST(AppStreamRecording, OriginalIsKeptBesideWhatIsEncoded) {
    Rig rig(3, 2.5);
    rig.play();
    rig.options.encoder = 4;
    rig.options.isOriginalKept = true;
    rig.options.isMp3CutByteExact = true;
    rig.engine->startRecording(rig.options);
    rig.waitForFiles(2);
    rig.engine->stopRecording();
    rig.waitForEnd();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !rig.engine->originals().isRunning(); }, kLimitMs));
    const QDir folder(rig.folder.filePath(QStringLiteral("Originals")));
    const QStringList originals = folder.entryList({QStringLiteral("*.mp3")}, QDir::Files);
    EXPECT_GE(originals.size(), 2);
    for (const QString& name : originals) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(rig.m_station.served().first().audio.contains(file.readAll()))
            << qPrintable(name);
    }
}

TEST(AppStreamRecording, EncodedPartsOfAGivenLengthLoseNothing) {
    Rig rig(3, 2);
    rig.play();
    rig.options.encoder = 6;
    rig.options.mode = RecordMode::NoSplit;
    rig.options.splitEvery = std::chrono::seconds(2);
    rig.options.hasTrackList = true;
    rig.engine->startRecording(rig.options);
    rig.waitForFiles(3);
    rig.engine->stopRecording();
    rig.waitForEnd();
    EXPECT_TRUE(rig.errors.empty());
    EXPECT_GE(rig.files.size(), 3U);
    for (const BASS::RecordedFile& file : rig.files)
        EXPECT_EQ(media::decodeErrors(file.path), QString());
    // the watch looks once a second by the clock: on a busy machine less or more has been decoded
    for (std::size_t n = 0; n + 1 < rig.files.size(); ++n)
        EXPECT_GT(media::decodedSeconds(rig.files[n].path), 0.2) << n;
}
