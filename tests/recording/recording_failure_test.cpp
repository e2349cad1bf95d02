#include "recording/audio_tools.h"
#include "recording/c_recording.h"
#include "recording/recorder_rig.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using BASS::RecordingErrorKind;

QByteArray mp3() {
    return lameEncoded({QStringLiteral("-b"), QStringLiteral("128")});
}

} // namespace

TEST(RecordingFailure, DiskBelowItsLimitEndsTheRecordingWithAReason) {
    RecorderRig rig;
    rig.options.minFreeBytes = Q_INT64_C(1) << 60;
    rig.start();
    rig.feed(mp3());
    rig.waitForEnd();
    ASSERT_EQ(rig.errors.size(), 1U);
    EXPECT_EQ(rig.errors[0].kind, RecordingErrorKind::CannotWrite);
    EXPECT_TRUE(rig.errors[0].detail.contains(QStringLiteral(" MB are free in ")));
    EXPECT_TRUE(rig.files.empty());
    EXPECT_FALSE(QFileInfo::exists(rig.options.folder));

    rig.options.minFreeBytes = 1;
    QSignalSpy progress(&rig.recorder, &BASS::StreamRecorder::sig_progress);
    rig.start();
    rig.recorder.connectionBegan();
    rig.feedPart(mp3());
    ASSERT_TRUE(progress.wait(10000));
    const auto told = progress.first().first().value<BASS::RecordingProgress>();
    EXPECT_GT(told.freeBytes, 0);
    EXPECT_NEAR(static_cast<double>(told.remaining.count()) * 16000,
                static_cast<double>(told.freeBytes),
                static_cast<double>(told.freeBytes) / 10);
    rig.stop();
}

TEST(RecordingFailure, MoreThanTheQueueHoldsEndsTheRecording) {
    const QByteArray huge(65 * 1024 * 1024, '\xFF');
    RecorderRig rig;
    rig.start();
    rig.recorder.connectionBegan();
    rig.feedPart(mp3());
    rig.recorder.append(huge.constData(), huge.size());
    rig.waitForEnd();
    ASSERT_EQ(rig.errors.size(), 1U);
    EXPECT_EQ(rig.errors[0].kind, RecordingErrorKind::CannotWrite);
    ASSERT_EQ(rig.files.size(), 1U);
    EXPECT_EQ(rig.files[0].bytes, QFileInfo(rig.files[0].path).size());
}

TEST(RecordingFailure, FolderThatCannotBeMadeIsTold) {
    RecorderRig rig;
    const QString blocker = rig.folder.filePath(QStringLiteral("music"));
    QFile file(blocker);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    rig.start();
    rig.feed(mp3());
    rig.waitForEnd();
    ASSERT_EQ(rig.errors.size(), 1U);
    EXPECT_EQ(rig.errors[0].kind, RecordingErrorKind::CannotCreateFile);
    EXPECT_EQ(rig.errors[0].message.toStdString(),
              "Recording failed: Unable to create output file");
    EXPECT_FALSE(rig.errors[0].detail.isEmpty());
    EXPECT_TRUE(rig.files.empty());
    // and the next attempt works
    ASSERT_TRUE(file.remove());
    rig.start();
    rig.feed(mp3());
    rig.stop();
    EXPECT_EQ(rig.files.size(), 1U);
}

/// A station whose titles jump to and fro twenty times a second: a file each, and nothing lost.
TEST(RecordingFailure, FlappingTitlesLoseNothing) {
    const QByteArray stream = lameEncoded({QStringLiteral("-b"), QStringLiteral("128")});
    constexpr int kFiftyMs = 800;
    for (const bool isByteExact : {true, false}) {
        RecorderRig rig;
        rig.options.isMp3CutByteExact = isByteExact;
        std::vector<Title> titles;
        for (int n = 1; n <= 80; ++n)
            titles.push_back(
                {n * kFiftyMs, n % 2 == 0 ? QStringLiteral("A") : QStringLiteral("B")});
        rig.start();
        rig.feed(stream, titles);
        rig.stop();
        EXPECT_TRUE(rig.errors.empty());
        EXPECT_EQ(rig.files.size(), 81U);
        if (isByteExact) {
            EXPECT_TRUE(rig.joined() == stream);
            continue;
        }
        for (std::size_t n = 0; n < rig.files.size(); n += 16)
            EXPECT_EQ(decodedByFfmpeg(rig.files[n].path).messages.toStdString(), "");
    }
}

/// A station that comes back in another format: a file of each, with its own extension.
TEST(RecordingFailure, AnotherFormatAfterAReconnectBeginsAnotherFile) {
    const QByteArray mp3 = lameEncoded({QStringLiteral("-b"), QStringLiteral("128")});
    const QByteArray aac =
        encoded(QStringLiteral("-c:a aac -b:a 96k -f adts").split(QLatin1Char(' ')));
    for (const bool isM4a : {true, false}) {
        RecorderRig rig;
        rig.options.isM4aUsed = isM4a;
        rig.options.isMp3CutByteExact = true;
        rig.options.mode = BASS::RecordMode::NoSplit;
        rig.start();
        rig.feed(mp3);
        rig.feed(aac);
        rig.feed(aac); // the same again goes on in the same file
        rig.stop();
        EXPECT_EQ(
            rig.names(),
            (QStringList{QStringLiteral("Station.mp3"),
                         isM4a ? QStringLiteral("Station.m4a") : QStringLiteral("Station.aac")}));
        for (const BASS::RecordedFile& file : rig.files)
            EXPECT_EQ(decodedByFfmpeg(file.path).messages.toStdString(), "");
        EXPECT_NEAR(static_cast<double>(rig.files.back().duration.count()), 24000, 200);
    }
}

TEST(RecordingFailure, KilledProcessLosesASecondAtMost) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Killed.mp3"));
    QProcess child;
    child.start(QStringLiteral(RECORDER_TEST_CHILD), {folder.path()});
    ASSERT_TRUE(child.waitForStarted());
    child.write(mp3().left(80000));
    constexpr qint64 kSecond = 16000;
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo(path).size() >= 80000 - kSecond; }, 10000));
    child.kill();
    ASSERT_TRUE(child.waitForFinished());
    const Decoded decoded = decodedByFfmpeg(path);
    EXPECT_EQ(decoded.messages.toStdString(), "");
    EXPECT_GT(decoded.samples.size(), 4U * 44100U * 2U);
    EXPECT_EQ(decodedByMpg123(path).messages.toStdString(), "");
}

TEST(RecordingFailure, TextsOfAllKinds) {
    const auto text = [](int kind) {
        return BASS::recordingErrorText(static_cast<RecordingErrorKind>(kind)).toStdString();
    };
    EXPECT_EQ(text(0), "Internal Error");
    EXPECT_EQ(text(2), "Recording failed - Missing encoder");
    EXPECT_EQ(text(3), "Recording failed: Unable to create output file");
    EXPECT_EQ(text(4), "Recording failed - Unable to write to disk");
    EXPECT_EQ(text(5), "Recording failed - Encoder has stopped working");
    EXPECT_EQ(text(6), "Unknown Error");
    EXPECT_EQ(BASS::libraryRecordingErrorText(QStringLiteral("No memory"), QString()).toStdString(),
              "No memory");
    EXPECT_EQ(BASS::libraryRecordingErrorText(QStringLiteral("No memory"), QStringLiteral("x"))
                  .toStdString(),
              "No memory (x)");
}
