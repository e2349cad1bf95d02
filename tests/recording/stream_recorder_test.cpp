#include "recording/audio_tools.h"
#include "recording/recorder_rig.h"

#include <QDir>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using BASS::RecordMode;

QByteArray mp3() {
    return lameEncoded({QStringLiteral("-b"), QStringLiteral("128")});
}

QByteArray adts() {
    return encoded(QStringLiteral("-c:a aac -b:a 96k -f adts").split(QLatin1Char(' ')));
}

QByteArray flac() {
    return encoded(QStringLiteral("-c:a flac -f flac").split(QLatin1Char(' ')));
}

} // namespace

TEST(StreamRecorder, AdtsFilesJoinToTheServedBytes) {
    const QByteArray stream = adts();
    RecorderRig rig;
    rig.start();
    rig.feed(stream, {{40001, QStringLiteral("B")}, {80002, QStringLiteral("C")}});
    rig.stop();
    EXPECT_EQ(rig.names(),
              (QStringList{QStringLiteral("Track 0.aac"),
                           QStringLiteral("B.aac"),
                           QStringLiteral("C.aac")}));
    EXPECT_TRUE(rig.joined() == stream);
    for (const BASS::RecordedFile& file : rig.files)
        EXPECT_EQ(decodedByFfmpeg(file.path).messages.toStdString(), "");
}

TEST(StreamRecorder, FlacFilesDecodeLikeTheWhole) {
    const QByteArray stream = flac();
    for (const int start : {0, 200001}) {
        RecorderRig rig;
        rig.recorder.connectionBegan();
        rig.feedPart(stream.left(start));
        rig.start();
        rig.feedPart(stream.mid(start, 400000 - start));
        rig.title(QStringLiteral("B"), 400000);
        rig.feedPart(stream.mid(400000));
        rig.stop();
        ASSERT_EQ(rig.files.size(), 2U);
        std::vector<float> sum;
        for (const BASS::RecordedFile& file : rig.files) {
            const Decoded part = decodedByFfmpeg(file.path);
            EXPECT_EQ(part.messages.toStdString(), "");
            EXPECT_NEAR(
                probedSeconds(file.path), static_cast<double>(file.duration.count()) / 1000, 0.001);
            sum.insert(sum.end(), part.samples.begin(), part.samples.end());
        }
        const Decoded whole = decodedByFfmpeg(fileWith(stream, QStringLiteral("flac")));
        EXPECT_EQ(difference(whole.samples, sum).largest, 0);
        EXPECT_EQ(sum.size() == whole.samples.size(), start == 0);
    }
}

TEST(StreamRecorder, AnotherFormatInTheSameConnectionBeginsANewFile) {
    const QByteArray vorbis =
        encoded(QStringLiteral("-c:a libvorbis -f ogg").split(QLatin1Char(' ')));
    const std::vector<std::pair<QString, QByteArray>> parts{{QStringLiteral("aac"), adts()},
                                                            {QStringLiteral("mp3"), mp3()},
                                                            {QStringLiteral("ogg"), vorbis}};
    const std::vector<std::vector<std::size_t>> orders{{0, 1}, {1, 0}, {1, 2}, {0, 1, 2}};
    for (const std::vector<std::size_t>& order : orders) {
        RecorderRig rig;
        QByteArray stream;
        QStringList names;
        for (const std::size_t part : order) {
            stream += parts[part].second;
            names << QStringLiteral("Track 0.") + parts[part].first;
        }
        rig.start();
        rig.feed(stream);
        rig.stop();
        EXPECT_EQ(rig.names(), names);
        for (std::size_t n = 0; n < std::min(order.size(), rig.files.size()); ++n) {
            const auto& [suffix, bytes] = parts[order[n]];
            const Decoded got = decodedByFfmpeg(rig.files[n].path);
            EXPECT_EQ(got.messages.toStdString(), "");
            EXPECT_EQ(got.samples.size(), decodedByFfmpeg(fileWith(bytes, suffix)).samples.size());
        }
    }
}

TEST(StreamRecorder, WithoutSplittingTitlesCutNothing) {
    RecorderRig rig;
    rig.options.mode = RecordMode::NoSplit;
    rig.start();
    rig.feed(adts(), {{40001, QStringLiteral("B")}, {80002, QStringLiteral("C")}});
    rig.stop();
    EXPECT_EQ(rig.names(), QStringList(QStringLiteral("Station.aac")));
    EXPECT_TRUE(rig.joined() == adts());
}

TEST(StreamRecorder, SingleSongEndsByItself) {
    RecorderRig running;
    running.options.mode = RecordMode::SingleSong;
    running.start(QStringLiteral("A"));
    running.feed(adts(), {{40001, QStringLiteral("B")}, {80002, QStringLiteral("C")}});
    running.waitForEnd();
    EXPECT_EQ(running.names(), QStringList(QStringLiteral("A.aac")));

    RecorderRig next;
    next.options.mode = RecordMode::SingleSong;
    next.start(QString());
    next.feed(adts(), {{70001, QStringLiteral("B")}, {100002, QStringLiteral("C")}});
    next.waitForEnd();
    ASSERT_EQ(next.names().size(), 2);
    EXPECT_EQ(next.names().last(), QStringLiteral("B.aac"));
    EXPECT_TRUE(adts().startsWith(next.joined()));
}

TEST(StreamRecorder, FirstTitleOfAConnectionNamesTheFileThatBeganWithIt) {
    RecorderRig rig;
    rig.start(QString());
    rig.feed(adts(), {{16000, QStringLiteral("A")}, {80002, QStringLiteral("B")}});
    rig.stop();
    EXPECT_EQ(rig.names(), (QStringList{QStringLiteral("A.aac"), QStringLiteral("B.aac")}));
    EXPECT_EQ(rig.files.at(0).song.track, QStringLiteral("A"));
    EXPECT_EQ(QDir(rig.options.folder).entryList(QDir::Files).size(), 2);
    EXPECT_TRUE(rig.joined() == adts());
}

TEST(StreamRecorder, TakenNamesAreKept) {
    RecorderRig rig;
    rig.start(QStringLiteral("A.b"));
    rig.feed(adts(), {{40001, QStringLiteral("B")}, {80002, QStringLiteral("A.b")}});
    rig.stop();
    ASSERT_EQ(rig.files.size(), 3U);
    EXPECT_TRUE(rig.names().at(2).startsWith(QStringLiteral("A_")));
    EXPECT_TRUE(rig.names().at(2).endsWith(QStringLiteral(".b.aac")));
    EXPECT_TRUE(rig.joined() == adts());
}

TEST(StreamRecorder, OverwritingReplacesOlderFilesOnly) {
    RecorderRig rig;
    rig.options.overwrite = true;
    ASSERT_TRUE(QDir().mkpath(rig.options.folder));
    for (const bool hasOld : {false, true}) {
        rig.files.clear();
        rig.start(QStringLiteral("A"));
        // the format changes: a further part of the same song
        rig.feed(adts());
        rig.feed(encoded(QStringLiteral("-c:a aac -ar 32000 -f adts").split(QLatin1Char(' '))));
        rig.stop();
        ASSERT_EQ(rig.files.size(), 2U);
        EXPECT_EQ(rig.names().at(0), QStringLiteral("A.aac"));
        EXPECT_NE(rig.names().at(1), QStringLiteral("A.aac"));
        EXPECT_TRUE(fileBytes(rig.files[0].path) == adts()) << hasOld;
    }
}

TEST(StreamRecorder, PauseLeavesOutWhatComesMeanwhile) {
    const QByteArray stream = adts();
    RecorderRig rig;
    rig.start();
    rig.recorder.connectionBegan();
    rig.feedPart(stream.left(40000));
    rig.recorder.setPaused(true);
    rig.feedPart(stream.mid(40000, 20000));
    rig.title(QStringLiteral("B"));
    rig.feedPart(stream.mid(60000, 20000));
    rig.recorder.setPaused(false);
    rig.feedPart(stream.mid(80000));
    rig.stop();
    EXPECT_EQ(rig.names(), (QStringList{QStringLiteral("Track 0.aac"), QStringLiteral("B.aac")}));
    EXPECT_TRUE(stream.startsWith(fileBytes(rig.files.at(0).path)));
    EXPECT_TRUE(stream.endsWith(fileBytes(rig.files.at(1).path)));
    EXPECT_NEAR(static_cast<double>(rig.joined().size()), stream.size() - 40000, 1000);
}

TEST(StreamRecorder, PartsOfEqualLengthJoinToTheWhole) {
    const Tones tones{150, 22050, 1, 300};
    const struct {
        const char* encoder;
        bool joinsBytes;
    } cases[] = {{"-c:a aac -b:a 32k -f adts", true},
                 {"-c:a libvorbis -q:a 0 -f ogg", false},
                 {"-c:a flac -f flac", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.encoder);
        const QByteArray stream =
            encoded(QString::fromLatin1(c.encoder).split(QLatin1Char(' ')), tones);
        RecorderRig rig;
        rig.options.mode = RecordMode::NoSplit;
        rig.options.splitEvery = std::chrono::minutes(1);
        rig.start();
        rig.feed(stream);
        rig.stop();
        ASSERT_EQ(rig.files.size(), 3U);
        std::size_t samples = 0;
        for (const BASS::RecordedFile& file : rig.files) {
            const Decoded part = decodedByFfmpeg(file.path);
            EXPECT_EQ(part.messages.toStdString(), "");
            samples += part.samples.size();
        }
        EXPECT_EQ(samples, decodedByFfmpeg(fileWith(stream, QStringLiteral("bin"))).samples.size());
        EXPECT_EQ(rig.files[0].duration.count() / 100, 600);
        EXPECT_EQ(rig.files[1].duration.count() / 100, 600);
        EXPECT_TRUE(!c.joinsBytes || rig.joined() == stream);
    }
}

TEST(StreamRecorder, NegativeDelayCutsBeforeTheTitle) {
    const QByteArray stream = mp3(); // 16000 bytes a second
    const struct {
        int delayMs;
        int title;
        int expected; ///< bytes in the first file
    } cases[] = {
        {-2000, 96000, 64000}, {-150, 96000, 96000}, {-60000, 96000, 0}, {2000, 96000, 128000}};
    for (const auto& c : cases) {
        RecorderRig rig;
        rig.options.isMp3CutByteExact = true;
        rig.options.splitDelay = std::chrono::milliseconds(c.delayMs);
        rig.start();
        rig.feed(stream, {{c.title, QStringLiteral("B")}});
        rig.stop();
        EXPECT_TRUE(rig.joined() == stream) << c.delayMs;
        if (c.expected == 0) {
            EXPECT_EQ(rig.names(), QStringList(QStringLiteral("B.mp3")));
            continue;
        }
        ASSERT_EQ(rig.files.size(), 2U) << c.delayMs;
        EXPECT_NEAR(static_cast<double>(rig.files[0].bytes), c.expected, 900) << c.delayMs;
    }
}

TEST(StreamRecorder, UnknownDataIsWrittenAsItComes) {
    const QByteArray text = QByteArray("neither frames nor pages ").repeated(5000);
    RecorderRig rig;
    rig.start();
    rig.feed(text, {{70000, QStringLiteral("B")}});
    rig.stop();
    EXPECT_EQ(rig.names(), QStringList(QStringLiteral("Track 0.mp3")));
    EXPECT_TRUE(rig.joined() == text);
}

TEST(StreamRecorder, StartsAgainAndTellsEachEnd) {
    RecorderRig rig;
    rig.stop();
    EXPECT_EQ(rig.finishes, 0);
    for (int n = 1; n <= 3; ++n) {
        rig.start(QStringLiteral("Song %1").arg(n));
        rig.feed(mp3());
        rig.recorder.stop();
        rig.recorder.stop();
    }
    rig.waitForEnd();
    EXPECT_EQ(rig.finishes, 3);
    EXPECT_EQ(rig.files.size(), 3U);
    EXPECT_EQ(rig.opened.size(), 3);
}

TEST(StreamRecorder, IsFedByAnotherThreadAndEndsUnderIt) {
    constexpr int kRounds = 5;
    constexpr int kRoundBytes = 300000;
    const QByteArray stream = mp3();
    RecorderRig rig;
    std::atomic<int> allowed{0};
    rig.recorder.connectionBegan();
    std::thread feeder([&] {
        for (int fed = 0; fed < (kRounds + 1) * kRoundBytes; fed += 1000) {
            while (fed >= allowed)
                std::this_thread::yield();
            const int at = fed % (stream.size() - 1000);
            rig.recorder.append(stream.constData() + at, 1000);
            if (fed % 50000 == 0)
                rig.recorder.trackChanged(BASS::songFromTrack(QStringLiteral("%1").arg(fed)));
        }
    });
    for (int n = 0; n < kRounds; ++n) {
        QSignalSpy finished(&rig.recorder, &BASS::StreamRecorder::sig_fileFinished);
        rig.start();
        allowed += kRoundBytes;
        EXPECT_TRUE(finished.wait(10000));
        rig.stop();
    }
    rig.start();
    allowed += kRoundBytes;
    rig.recorder.stopAndWait();
    feeder.join();
    EXPECT_TRUE(rig.errors.empty());
}
