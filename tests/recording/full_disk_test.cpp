#include "recording/audio_tools.h"
#include "recording/recorder_rig.h"

#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

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
