#include "recording/audio_tools.h"
#include "recording/recorder_rig.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

// What cannot be made to happen on Windows: no process there can be given a limit for its files,
// and the folder of an open file stays.

namespace {

using BASS::RecordingErrorKind;

/// The largest file that this process may write, as a disk that is full.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit limit = m_old;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

  private:
    rlimit m_old{};
    void (*m_oldHandler)(int);
};

} // namespace

TEST(RecordingFailure, FullDiskEndsTheRecordingAndKeepsWhatIsThere) {
    RecorderRig rig;
    const QByteArray stream =
        lameEncoded({QStringLiteral("-b"),
                     QStringLiteral("128")}); // before the limit, which holds for the encoder too
    {
        const FileSizeLimit limit(50000);
        rig.start();
        rig.feed(stream);
        rig.waitForEnd();
    }
    ASSERT_EQ(rig.errors.size(), 1U);
    EXPECT_EQ(rig.errors[0].kind, RecordingErrorKind::CannotWrite);
    EXPECT_EQ(rig.errors[0].message.toStdString(), "Recording failed - Unable to write to disk");
    EXPECT_FALSE(rig.errors[0].detail.isEmpty());
    EXPECT_EQ(rig.finishes, 1);
    ASSERT_EQ(rig.files.size(), 1U);
    EXPECT_GT(QFileInfo(rig.files[0].path).size(), 48000);
    EXPECT_EQ(rig.files[0].bytes, QFileInfo(rig.files[0].path).size());
    const Decoded decoded = decodedByFfmpeg(rig.files[0].path);
    EXPECT_EQ(decoded.messages.toStdString(), "");
    EXPECT_GT(decoded.samples.size(), 2U * 44100U * 2U);
}

TEST(RecordingFailure, VanishedFolderIsMadeAgainWithTheWholeFile) {
    const QByteArray stream = lameEncoded({QStringLiteral("-b"), QStringLiteral("128")});
    RecorderRig rig;
    rig.options.isMp3CutByteExact = true;
    QSignalSpy opened(&rig.recorder, &BASS::StreamRecorder::sig_fileOpened);
    rig.start();
    rig.recorder.connectionBegan();
    rig.feedPart(stream.left(60000));
    ASSERT_TRUE(opened.wait(10000));
    ASSERT_TRUE(QDir(rig.options.folder).removeRecursively());
    // the writer looks after its file once a second
    const QString path = rig.opened.at(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo(path).size() > 0; }, 10000));
    rig.feedPart(stream.mid(60000));
    rig.stop();
    EXPECT_TRUE(rig.errors.empty());
    ASSERT_EQ(rig.files.size(), 1U);
    EXPECT_TRUE(rig.joined() == stream);
}
