#include "audio/provider_loader.h"
#include "engine/app_device_stream.h"
#include "support/disk_microphone.h"
#include "support/media_tools.h"

#include <QFileInfo>
#include <QTest>

namespace {

constexpr int kLimitMs = 30000;

} // namespace

TEST(AppDeviceStream, PlaysAndRecordsTheRecordingDevice) {
    const DiskMicrophone microphone(60.0);
    auto library =
        BASS::loadAudioProvider(QStringLiteral("wavelark_ffmpeg"), BASS::audioProviderFolders());
    ASSERT_TRUE(library.isOk());
    AppDeviceStream engine(library.value());
    EngineSettings settings;
    settings.outputDevice = 0;
    settings.fadeOut = {};
    engine.setSettings(settings);
    std::vector<BASS::RecordedFile> files;
    QObject::connect(&engine.recorder(),
                     &BASS::StreamRecorder::sig_fileFinished,
                     &engine,
                     [&files](const BASS::RecordedFile& file) { files.push_back(file); });

    engine.play(
        BASS::stationFromAddress(QStringLiteral("RecordingDevice"), QStringLiteral("Microphone")));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return engine.playState() == PlayState::Playing; }, kLimitMs));
    EXPECT_EQ(engine.streamInfo().format, QStringLiteral("Recording Channel"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return engine.ChannelGetLevel() != 0; }, kLimitMs));

    const QTemporaryDir folder;
    BASS::RecordingOptions options;
    options.folder = folder.path();
    options.mode = BASS::RecordMode::NoSplit;
    options.patternNoSplit = QStringLiteral("%title%");
    options.station.station = QStringLiteral("Microphone");
    engine.startRecording(options); // the stream's own data, which a device has not
    const QString path = folder.filePath(QStringLiteral("Microphone.flac"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo(path).size() > 20000; }, kLimitMs));
    engine.stop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !engine.isRecording(); }, kLimitMs));
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(media::decodeErrors(path), QString());
    EXPECT_EQ(engine.playState(), PlayState::Stopped);
}
