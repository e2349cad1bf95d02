#include "engine/program_folder.h"
#include "engine/recording_rig.h"

#include <QFile>
#include <QFileInfo>

// Recordings through programs that stand in PATH under the encoders' names.

namespace {

using BASS::RecordingErrorKind;
using BASS::RecordMode;

} // namespace

TEST(ExternalRecording, ProgramsOfTheTableMakeTheFiles) {
    const ProgramFolder programs;
    programs.add("enc_aacplus");
    programs.add("faac");
    qputenv("ENCODER_STEPS", "adts");
    const struct {
        int encoder;
        const char* suffix;
    } cases[] = {{3, "aac"}, {8, "mp3"}}; // deliberately
    for (const auto& c : cases) {
        SCOPED_TRACE(c.encoder);
        Rig rig(3, 2.5);
        rig.play();
        rig.options.encoder = c.encoder;
        rig.engine->startRecording(rig.options);
        rig.waitForFiles(2);
        rig.engine->stopRecording();
        rig.waitForEnd();
        EXPECT_TRUE(rig.errors.empty());
        ASSERT_GE(rig.files.size(), 2U);
        const QString path = rig.files[1].path;
        EXPECT_EQ(QFileInfo(path).suffix(), QLatin1String(c.suffix));
        EXPECT_EQ(media::probe(path, QStringLiteral("stream=codec_name")), QStringLiteral("aac"));
        EXPECT_EQ(media::decodeErrors(path), QString());
        EXPECT_NEAR(media::decodedSeconds(path), 2.5, 0.15);
    }
}

TEST(ExternalRecording, ABadProgramEndsTheRecordingWithItsMessage) {
    const struct {
        const char* what;
        const char* steps;
    } cases[] = {
        {"ends at once", "exit 3"},
        {"crashes later", "take 100000; crash"},
        {"hangs", "hang"},
        {"writes rubbish", "say Usage: enc_aacplus [options]; take"},
    };
    const ProgramFolder programs;
    programs.add("enc_aacplus");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        qputenv("ENCODER_STEPS", c.steps);
        Rig rig(3, 60);
        rig.play();
        rig.options.encoder = 3;
        rig.engine->startRecording(rig.options);
        rig.waitForEnd();
        ASSERT_EQ(rig.errors.size(), 1U);
        EXPECT_EQ(rig.errors[0].kind, RecordingErrorKind::EncoderStopped);
        EXPECT_EQ(rig.errors[0].message.toStdString(),
                  "Recording failed - Encoder has stopped working");
        EXPECT_EQ(QDir(rig.folder.path()).entryList(QDir::Files), QStringList());
        EXPECT_EQ(rig.engine->playState(), PlayState::Playing); // the music goes on
    }
}

TEST(ExternalRecording, TheUsersArgumentsReachTheProgram) {
    const ProgramFolder programs;
    QTemporaryDir notes;
    const QString note = notes.filePath(QStringLiteral("told"));
    programs.add("enc_aacplus");
    qputenv("ENCODER_STEPS", "note " + note.toUtf8() + "; adts");
    Rig rig(3, 60);
    rig.play();
    rig.options.encoder = 3;
    rig.options.encodingBitrate = 48;
    rig.options.encoderArguments = QStringLiteral("--br 0 --he");
    rig.engine->startRecording(rig.options);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo(note).size() > 0; }, kLimitMs));
    rig.engine->stopRecording();
    rig.waitForEnd();
    QFile told(note);
    ASSERT_TRUE(told.open(QIODevice::ReadOnly));
    EXPECT_EQ(told.readAll(), QByteArray("- - --silent --rawpcm 44100 2 16 --br 48000 --he"));
}
