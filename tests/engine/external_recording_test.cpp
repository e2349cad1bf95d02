#include "engine/recording_rig.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

// Recordings through programs that stand in PATH under the encoders' names.

namespace {

using BASS::RecordingErrorKind;
using BASS::RecordMode;

/// A folder that is searched before all others.
class ProgramFolder {
  public:
    ProgramFolder() : m_path(qgetenv("PATH")) {
        qputenv("PATH", QFile::encodeName(m_folder.path()) + ':' + m_path);
    }
    ~ProgramFolder() { qputenv("PATH", m_path); }
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;

    void add(const char* name, const QByteArray& script) const {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

  private:
    QTemporaryDir m_folder;
    QByteArray m_path;
};

const QByteArray kAdts = "exec ffmpeg -v error -f s16le -ar 44100 -ac 2 -i - -c:a aac -f adts -";

} // namespace

TEST(ExternalRecording, ProgramsOfTheTableMakeTheFiles) {
    const ProgramFolder programs;
    programs.add("enc_aacplus", kAdts);
    programs.add("faac", kAdts);
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
        const char* script;
    } cases[] = {
        {"crashes at once", "exit 3"},
        {"crashes later", "head -c 100000 >/dev/null; kill -SEGV $$"},
        {"hangs", "exec sleep 60"},
        {"writes rubbish", "echo 'Usage: enc_aacplus [options]'; exec cat >/dev/null"},
    };
    const ProgramFolder programs;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        programs.add("enc_aacplus", c.script);
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
    const QByteArray note = QFile::encodeName(notes.filePath(QStringLiteral("told")));
    programs.add("enc_aacplus", "echo \"$@\" > " + note + '\n' + kAdts);
    Rig rig(3, 60);
    rig.play();
    rig.options.encoder = 3;
    rig.options.encodingBitrate = 48;
    rig.options.encoderArguments = QStringLiteral("--br 0 --he");
    rig.engine->startRecording(rig.options);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return QFileInfo(QFile::decodeName(note)).size() > 0; }, kLimitMs));
    rig.engine->stopRecording();
    rig.waitForEnd();
    QFile told(QFile::decodeName(note));
    ASSERT_TRUE(told.open(QIODevice::ReadOnly));
    EXPECT_EQ(told.readAll().trimmed(),
              QByteArray("- - --silent --rawpcm 44100 2 16 --br 48000 --he"));
}
