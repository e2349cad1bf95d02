#include "audio/provider_loader.h"
#include "engine/app_stream.h"
#include "engine/engine_events.h"
#include "support/media_tools.h"
#include "support/test_station.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using BASS::RecordMode;

constexpr int kLimitMs = 30000;
constexpr int kBytesPerSecond = 16000;

QVector<StationTrack> tones(int count, double seconds) {
    QVector<StationTrack> tracks;
    for (int n = 1; n <= count; ++n)
        tracks.append({media::encodeTone({400 * n,
                                          seconds,
                                          {QStringLiteral("-c:a"),
                                           QStringLiteral("libmp3lame"),
                                           QStringLiteral("-b:a"),
                                           QStringLiteral("128k")},
                                          QStringLiteral("mp3"),
                                          {}}),
                       QByteArray("Artist - Song ") + QByteArray::number(n)});
    return tracks;
}

/// An engine without a sound card, a station of tones, and a recording folder.
class Rig {
  public:
    explicit Rig(int trackCount = 3, double seconds = 4) {
        StationScript script;
        script.tracks = tones(trackCount, seconds);
        script.isLooped = true;
        script.metaint = 1024;
        script.speed = 1;
        script.burst = 4 * kBytesPerSecond;
        script.bytesPerSecond = kBytesPerSecond;
        script.contentType = "audio/mpeg";
        m_station.setScript(script);
        EXPECT_TRUE(m_station.listen());
        auto library = BASS::loadAudioProvider(QStringLiteral("wavelark_ffmpeg"),
                                               BASS::audioProviderFolders());
        EXPECT_TRUE(library.isOk());
        engine = std::make_unique<AppStream>(library.value());
        EngineSettings settings;
        settings.outputDevice = 0;
        settings.fadeOut = {};
        engine->setSettings(settings);
        options.folder = folder.path();
        options.patternSplit = QStringLiteral("%track_or_title%");
        options.patternNoSplit = QStringLiteral("%title%");
        options.station.station = QStringLiteral("Tones");
        options.encodingBitrate = 128;
        const BASS::StreamRecorder& recorder = engine->recorder();
        using Recorder = BASS::StreamRecorder;
        QObject::connect(&recorder,
                         &Recorder::sig_fileFinished,
                         &recorder,
                         [this](const auto& file) { files.push_back(file); });
        QObject::connect(&recorder, &Recorder::sig_failed, &recorder, [this](const auto& error) {
            errors.push_back(error);
        });
    }

    void play(unsigned splitDelayMs = 0) {
        BASS::StationRecord record = BASS::stationFromAddress(m_station.url());
        record.splitDelayMs = splitDelayMs;
        engine->play(record);
        ASSERT_TRUE(QTest::qWaitFor([this] { return engine->playState() == PlayState::Playing; },
                                    kLimitMs));
    }
    void waitForFiles(std::size_t count) {
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return files.size() >= count || !errors.empty(); }, kLimitMs));
    }
    void waitForEnd() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !engine->isRecording(); }, kLimitMs));
    }

    TestStation m_station;
    QTemporaryDir folder;
    BASS::RecordingOptions options;
    std::vector<BASS::RecordedFile> files;
    std::vector<BASS::RecordingError> errors;
    std::unique_ptr<AppStream> engine;
};

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
