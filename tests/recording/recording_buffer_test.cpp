#include "recording/audio_tools.h"
#include "recording/recorder_rig.h"
#include "recording/recording_buffer.h"

#include <gtest/gtest.h>

namespace {

using BASS::RecordingBuffer;
using BASS::RecordMode;

BASS::Song song(const char* track) {
    return BASS::songFromTrack(QString::fromLatin1(track));
}

QByteArray counted(int from, int count) {
    QByteArray bytes;
    for (int n = from; n < from + count; ++n)
        bytes.append(static_cast<char>(n % 251));
    return bytes;
}

QByteArray mp3() {
    return lameEncoded({QStringLiteral("-b"), QStringLiteral("128")});
}

/// A rig with a buffer that was fed while nothing was recorded.
struct BufferedRig : RecorderRig {
    BufferedRig(const QByteArray& stream, const std::vector<Title>& titles) {
        recorder.setBufferSize(1);
        recorder.connectionBegan();
        int fed = 0;
        for (const Title& next : titles) {
            feedPart(stream.mid(fed, static_cast<int>(next.position) - fed));
            fed = static_cast<int>(next.position);
            title(next.text, next.position);
        }
        feedPart(stream.mid(fed));
    }
};

} // namespace

TEST(RecordingBuffer, HoldsTheLastBytesAtEveryFill) {
    for (const int piece : {1, 7, 99, 100, 101, 350}) {
        RecordingBuffer buffer(100, 1000);
        ASSERT_TRUE(buffer.isValid());
        EXPECT_TRUE(buffer.read(1000, 10).isEmpty());
        for (int at = 1000; at < 2000; at += piece) {
            buffer.append(counted(at, piece).constData(), piece);
            const qint64 end = at + piece;
            ASSERT_EQ(buffer.end(), end);
            ASSERT_EQ(buffer.first(), std::max<qint64>(1000, end - 100));
            ASSERT_EQ(
                buffer.read(buffer.first(), 1000),
                counted(static_cast<int>(buffer.first()), static_cast<int>(end - buffer.first())));
        }
        EXPECT_TRUE(buffer.read(buffer.first() - 1, 5).isEmpty());
        const auto copy = buffer.copyFrom(buffer.end() - 30);
        EXPECT_EQ(copy->read(copy->first(), 100), counted(static_cast<int>(buffer.end()) - 30, 30));
    }
}

TEST(RecordingBuffer, PlansFromWhatItHolds) {
    RecordingBuffer buffer(200000, 0);
    buffer.append(counted(0, 100000).constData(), 100000);
    buffer.addTitle(song("A"), 100000);
    buffer.append(counted(0, 90000).constData(), 90000);
    buffer.addTitle(song("B"), 190000);
    const auto at = [&](const char* running, bool isWhole = false) {
        const BASS::BufferStart start = planBufferStart(buffer, song(running), isWhole);
        return QStringLiteral("%1 %2")
            .arg(start.position)
            .arg(start.awaited ? start.awaited->track : QStringLiteral("-"))
            .toStdString();
    };
    EXPECT_EQ(at(""), "124464 B");
    EXPECT_EQ(at("A"), "34464 A");
    EXPECT_EQ(at("before them"), "0 -");
    EXPECT_EQ(at("A", true), "0 -");
    EXPECT_EQ(planLastTitle(buffer, song(""))->awaited->track, QStringLiteral("A"));
    EXPECT_FALSE(planLastTitle(buffer, song("A")));
    buffer.append(counted(0, 120000).constData(), 120000);
    EXPECT_EQ(at("A"), "110000 -") << "the title's place is gone";
    EXPECT_EQ(at(""), "124464 B");
    EXPECT_FALSE(planLastTitle(buffer, song("")));
    buffer.clear();
    EXPECT_EQ(at("B"), "310000 -");
}

TEST(RecordingBuffer, RecordingBeginsWithTheRunningTitle) {
    const QByteArray stream = mp3();
    for (const RecordMode mode : {RecordMode::Split, RecordMode::SingleSong}) {
        BufferedRig rig(stream.left(120000),
                        {{30000, QStringLiteral("A")}, {90000, QStringLiteral("B")}});
        rig.options.mode = mode;
        rig.options.isMp3CutByteExact = true;
        rig.start(QStringLiteral("B"));
        rig.feedPart(stream.mid(120000, 40000));
        rig.title(QStringLiteral("C"), 160000);
        rig.feedPart(stream.mid(160000));
        rig.stop();
        ASSERT_GE(rig.names().size(), 1);
        EXPECT_EQ(rig.names()[0], QStringLiteral("B.mp3"));
        const int start = stream.size() - stream.indexOf(rig.joined().left(2000));
        EXPECT_NEAR(stream.size() - start, 90000, 420);
        const bool isSingle = mode == RecordMode::SingleSong;
        EXPECT_EQ(rig.names().size(), isSingle ? 1 : 2);
        EXPECT_TRUE(isSingle ? stream.contains(rig.joined()) : stream.endsWith(rig.joined()));
        EXPECT_NEAR(static_cast<double>(rig.files[0].bytes), 70000, 850);
    }
}

TEST(RecordingBuffer, FirstFileDecodesLikeTheStream) {
    const QByteArray stream = mp3();
    BufferedRig rig(stream.left(120000), {{90000, QStringLiteral("B")}});
    rig.start(QStringLiteral("B"));
    rig.feedPart(stream.mid(120000));
    rig.stop();
    ASSERT_EQ(rig.files.size(), 1U);
    const Decoded part = decodedByFfmpeg(rig.files[0].path);
    EXPECT_EQ(part.messages.toStdString(), "");
    const Decoded whole = decodedByFfmpeg(fileWith(stream, QStringLiteral("mp3")));
    EXPECT_EQ(difference(whole.samples, part.samples).count, 0U);
}

TEST(RecordingBuffer, WithoutSplittingAllOfItComesFirst) {
    const QByteArray stream = encoded(QStringLiteral("-c:a aac -f adts").split(QLatin1Char(' ')));
    BufferedRig rig(stream.left(60000), {{30000, QStringLiteral("A")}});
    rig.options.mode = RecordMode::NoSplit;
    rig.start(QStringLiteral("A"));
    rig.feedPart(stream.mid(60000));
    rig.stop();
    EXPECT_TRUE(rig.joined() == stream);
    // the next recording has a new buffer, which holds nothing yet
    rig.files.clear();
    rig.start(QStringLiteral("A"));
    rig.feedPart(stream);
    rig.stop();
    EXPECT_TRUE(rig.joined() == stream);
}

TEST(RecordingBuffer, ItsFirstTitleNamesWhatBeginsWithTheConnection) {
    const QByteArray stream = mp3();
    const std::vector<Title> titles = {{1024, QStringLiteral("First")},
                                       {90000, QStringLiteral("Running")}};
    for (const bool isEncoded : {false, true}) {
        BufferedRig rig(stream.left(120000), titles);
        rig.options.mode = RecordMode::NoSplit;
        rig.options.patternNoSplit = QStringLiteral("%track%");
        if (isEncoded) {
            const auto past = rig.recorder.startEncoded(rig.options, song("Running"), 0);
            EXPECT_EQ(past.song.track, QStringLiteral("First"));
            ASSERT_EQ(past.titles.size(), 1U);
            EXPECT_EQ(past.titles[0].track, QStringLiteral("Running"));
        } else {
            rig.start(QStringLiteral("Running"));
            rig.feedPart(stream.mid(120000));
        }
        rig.stop();
        EXPECT_EQ(rig.names(),
                  isEncoded ? QStringList() : QStringList(QStringLiteral("First.mp3")));
    }
}

TEST(RecordingBuffer, FlacAndOggBeginInTheMiddle) {
    const char* const encoders[] = {
        "-c:a flac -f flac", "-c:a flac -f ogg", "-c:a libvorbis -f ogg"};
    for (const char* encoder : encoders) {
        SCOPED_TRACE(encoder);
        const QByteArray stream =
            encoded(QString::fromLatin1(encoder).split(QLatin1Char(' ')), {40, 44100, 2, 300});
        const int before = stream.size() - 60000;
        BufferedRig rig(stream.left(before), {});
        rig.options.mode = RecordMode::NoSplit;
        rig.start(QStringLiteral("A"));
        rig.feedPart(stream.mid(before));
        rig.stop();
        ASSERT_EQ(rig.files.size(), 1U);
        const Decoded part = decodedByFfmpeg(rig.files[0].path);
        EXPECT_EQ(part.messages.toStdString(), "");
        EXPECT_EQ(difference(decodedByFfmpeg(fileWith(stream, QStringLiteral("bin"))).samples,
                             part.samples)
                      .count,
                  0U);
    }
}

TEST(RecordingBuffer, LastTitleIsKeptAfterTheFact) {
    const QByteArray stream = mp3();
    BufferedRig rig(stream, {{30000, QStringLiteral("A")}, {90000, QStringLiteral("B")}});
    rig.options.isMp3CutByteExact = true;
    ASSERT_TRUE(rig.recorder.keepLastTitle(rig.options, song("B")));
    rig.waitForEnd();
    EXPECT_EQ(rig.names(), QStringList(QStringLiteral("A.mp3")));
    EXPECT_NEAR(static_cast<double>(rig.files[0].bytes), 60000, 840);
    EXPECT_TRUE(stream.contains(rig.joined()));
    // what was kept is still there for a recording
    rig.files.clear();
    rig.start(QStringLiteral("B"));
    EXPECT_FALSE(rig.recorder.keepLastTitle(rig.options, song("B")));
    rig.stop();
    EXPECT_EQ(rig.names(), QStringList(QStringLiteral("B.mp3")));
    EXPECT_TRUE(stream.endsWith(rig.joined()));
}

TEST(RecordingBuffer, OverReconnectsAndWhenItIsOff) {
    const QByteArray stream = encoded(QStringLiteral("-c:a aac -f adts").split(QLatin1Char(' ')));
    RecorderRig rig;
    rig.recorder.setBufferSize(1);
    rig.feed(stream, {{30000, QStringLiteral("A")}});
    rig.feed(stream);
    rig.start(QStringLiteral("A"));
    rig.feed(stream);
    rig.stop();
    EXPECT_EQ(rig.names(), QStringList(QStringLiteral("A.aac")));
    EXPECT_TRUE(rig.joined().endsWith(stream + stream));
    EXPECT_NEAR(static_cast<double>(rig.joined().size()), 3.0 * stream.size() - 30000, 700);

    rig.files.clear();
    rig.recorder.connectionBegan();
    rig.feedPart(stream);
    rig.recorder.clearBuffer();
    rig.start(QStringLiteral("A"));
    rig.feedPart(stream);
    rig.recorder.setBufferSize(0);
    rig.stop();
    EXPECT_TRUE(rig.joined() == stream);
    rig.feedPart(stream);
    EXPECT_FALSE(rig.recorder.keepLastTitle(rig.options, {}));
}
