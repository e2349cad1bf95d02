#include "recording/audio_tools.h"
#include "recording/mp3_info_frame.h"
#include "recording/recorder_rig.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using BASS::isMp3InfoFrame;

struct Stream {
    const char* name;
    const char* arguments; ///< of lame
    Tones tones;
};

QByteArray mp3(const Stream& stream) {
    return lameEncoded(QString::fromLatin1(stream.arguments).split(QLatin1Char(' ')), stream.tones);
}

const Stream kHundredTwentyEight{"128", "-b 128", {}};

/// Places inside frames, in the middle of nowhere.
std::vector<Title> fourTitles(const QByteArray& stream) {
    std::vector<Title> titles;
    for (int n = 1; n <= 4; ++n)
        titles.push_back({stream.size() * n / 5 + 37 * n, QStringLiteral("Track %1").arg(n)});
    return titles;
}

/// The encoder delay that the Info frame of a file tells, in samples.
int delayOf(const QByteArray& info) {
    const int tag = std::max(info.indexOf("Info"), info.indexOf("Xing"));
    const int extension = info.indexOf("LAME", tag);
    const auto byte = [&](int at) { return static_cast<unsigned char>(info.at(extension + at)); };
    return byte(21) << 4 | byte(22) >> 4;
}

/// What a file holds of the stream: without Info frame and pre-roll.
QByteArray audioOf(const QString& path) {
    const std::vector<QByteArray> frames = mpegFrames(fileBytes(path));
    EXPECT_FALSE(frames.empty());
    EXPECT_TRUE(isMp3InfoFrame(frames.front())) << qPrintable(path);
    const bool isHalfRate = (frames.front().at(1) & 8) == 0;
    const int frameSamples = isHalfRate ? 576 : 1152;
    const int skipped = delayOf(frames.front()) + BASS::kMp3DecoderDelay;
    EXPECT_EQ(skipped % frameSamples, 0);
    QByteArray audio;
    for (std::size_t n = 1 + static_cast<std::size_t>(skipped / frameSamples); n < frames.size();
         ++n)
        audio += frames[n];
    return audio;
}

/// The frames that lie in a part of the stream as a whole.
QByteArray wholeFrames(const QByteArray& stream, int from, int to) {
    QByteArray result;
    int at = 0;
    for (const QByteArray& frame : mpegFrames(stream)) {
        if (at >= from && at + frame.size() <= to)
            result += frame;
        at += frame.size();
    }
    return result;
}

class Mp3Cut : public testing::TestWithParam<Stream> {};

} // namespace

TEST_P(Mp3Cut, FilesInARowDecodeLikeTheWhole) {
    const QByteArray stream = mp3(GetParam());
    RecorderRig rig;
    rig.start();
    rig.feed(stream, fourTitles(stream));
    rig.stop();
    ASSERT_EQ(rig.files.size(), 5U);

    const QString whole = fileWith(stream, QStringLiteral("mp3"));
    for (const auto decode : {&decodedByFfmpeg, &decodedByMpg123}) {
        std::vector<float> sum;
        QByteArray audio;
        for (const BASS::RecordedFile& file : rig.files) {
            const Decoded part = decode(file.path);
            EXPECT_EQ(part.messages.toStdString(), "") << qPrintable(file.path);
            sum.insert(sum.end(), part.samples.begin(), part.samples.end());
            audio += audioOf(file.path);
            const double heard = static_cast<double>(part.samples.size()) /
                                 GetParam().tones.channels / GetParam().tones.sampleRate;
            EXPECT_NEAR(static_cast<double>(file.duration.count()) / 1000.0, heard, 0.001);
            // which counts the pre-roll
            EXPECT_NEAR(probedSeconds(file.path), heard, 2400.0 / GetParam().tones.sampleRate);
        }
        const Decoded all = decode(whole);
        EXPECT_EQ(sum.size(), all.samples.size());
        EXPECT_LT(difference(all.samples, sum).largest, 1e-6);
        EXPECT_TRUE(audio == stream) << "frames lost or doubled";
    }
}

INSTANTIATE_TEST_SUITE_P(
    Encodings,
    Mp3Cut,
    testing::Values(Stream{"b64", "-b 64 --resample 44.1", {}},
                    kHundredTwentyEight,
                    Stream{"b320", "-b 320", {}},
                    Stream{"vbr", "-V 4", {}},
                    Stream{"checksums", "-b 128 -p", {}},
                    Stream{"mono32", "-b 32 -m m --resample 32", {12, 32000, 1, 300}},
                    Stream{"mono64", "-b 64 -m m", {12, 44100, 1, 300}},
                    Stream{"halfRate", "-b 64 --resample 22.05", {12, 22050, 2, 300}},
                    Stream{"halfRateMono8", "-b 8 -m m --resample 16", {12, 16000, 1, 300}},
                    Stream{"quarterRate", "-b 24 --resample 11.025", {12, 11025, 2, 300}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Mp3CutPlace, EveryByteAroundAFrameBoundary) {
    const QByteArray stream = mp3(kHundredTwentyEight);
    const std::vector<QByteArray> frames = mpegFrames(stream);
    constexpr std::size_t kCut = 40;
    int boundary = 0;
    for (std::size_t n = 0; n < kCut; ++n)
        boundary += frames[n].size();
    for (int shift = -3; shift <= 3; ++shift) {
        RecorderRig rig;
        rig.start();
        rig.feed(stream.left(100000), {{boundary + shift, QStringLiteral("Track 1")}});
        rig.stop();
        ASSERT_EQ(rig.files.size(), 2U);
        // a frame that begins at the title's place or behind it belongs to the next file
        const int expected = shift <= 0 ? boundary : boundary + frames[kCut].size();
        EXPECT_EQ(audioOf(rig.files[0].path).size(), expected) << "shift " << shift;
        EXPECT_TRUE(stream.startsWith(audioOf(rig.files[0].path) + audioOf(rig.files[1].path)));
    }
}

TEST(Mp3CutPlace, LateTitleMovesTheTailToTheNextFile) {
    const QByteArray stream = mp3(kHundredTwentyEight);
    RecorderRig prompt;
    prompt.start();
    prompt.feed(stream, {{60001, QStringLiteral("Track 1")}, {120001, QStringLiteral("Track 2")}});
    prompt.stop();
    RecorderRig late;
    late.start();
    late.recorder.connectionBegan();
    late.feedPart(stream.left(115000));
    late.title(QStringLiteral("Track 1"), 60001);
    late.feedPart(stream.mid(115000, 65000));
    late.title(QStringLiteral("Track 2"), 120001);
    late.feedPart(stream.mid(180000));
    late.stop();
    EXPECT_EQ(late.names(), prompt.names());
    EXPECT_TRUE(late.joined() == prompt.joined());
}

TEST(Mp3CutPlace, SplitDelayCountsStreamTime) {
    const QByteArray stream = mp3(kHundredTwentyEight);
    const auto firstFileMs = [&](int delayMs) {
        RecorderRig rig;
        rig.options.splitDelay = std::chrono::milliseconds(delayMs);
        rig.start();
        rig.feed(stream, {{64000, QStringLiteral("Track 1")}});
        rig.stop();
        return rig.files.at(0).duration.count();
    };
    const auto prompt = firstFileMs(0);
    constexpr int kFrameMs = 27;
    EXPECT_EQ(firstFileMs(150), prompt);
    EXPECT_NEAR(static_cast<double>(firstFileMs(250) - prompt), 250, kFrameMs);
    EXPECT_NEAR(static_cast<double>(firstFileMs(3000) - prompt), 3000, kFrameMs);
}

TEST(Mp3CutFile, ByteExactFilesJoinToTheServedBytes) {
    const QByteArray stream = mp3(kHundredTwentyEight);
    RecorderRig rig;
    rig.options.isMp3CutByteExact = true;
    rig.start();
    rig.feed(stream, fourTitles(stream));
    rig.stop();
    EXPECT_EQ(rig.files.size(), 5U);
    EXPECT_TRUE(rig.joined() == stream);
}

TEST(Mp3CutFile, LayersWithoutReservoirAreCutAsTheyAre) {
    const QByteArray stream = encoded({QStringLiteral("-c:a"),
                                       QStringLiteral("mp2"),
                                       QStringLiteral("-f"),
                                       QStringLiteral("mp2")});
    RecorderRig rig;
    rig.start();
    rig.feed(stream, fourTitles(stream));
    rig.stop();
    EXPECT_EQ(rig.names().value(1), QStringLiteral("Track 1.mp3"));
    EXPECT_EQ(rig.files.size(), 5U);
    EXPECT_TRUE(rig.joined() == stream);
}

TEST(Mp3CutFile, RecordingFromTheMiddleOfAFrameIsQuietAboutIt) {
    const QByteArray stream = mp3(kHundredTwentyEight);
    const Decoded all = decodedByFfmpeg(fileWith(stream, QStringLiteral("mp3")));
    for (const int at : {50000, 50123, 50300}) {
        RecorderRig rig;
        rig.recorder.connectionBegan();
        rig.feedPart(stream.left(at));
        rig.start();
        rig.feedPart(stream.mid(at));
        rig.stop();
        ASSERT_EQ(rig.files.size(), 1U);
        const Decoded part = decodedByFfmpeg(rig.files[0].path);
        EXPECT_EQ(part.messages.toStdString(), "");
        EXPECT_GT(part.samples.size(), all.samples.size() / 2);
        EXPECT_LT(difference(all.samples, part.samples).largest, 1e-6) << "noise at the start";
    }
}

TEST(Mp3CutFile, ServedInfoFrameGivesWayToTheFilesOwn) {
    const QByteArray stream = encoded({QStringLiteral("-c:a"),
                                       QStringLiteral("libmp3lame"),
                                       QStringLiteral("-f"),
                                       QStringLiteral("mp3")});
    RecorderRig rig;
    rig.start();
    rig.feed(stream);
    rig.stop();
    ASSERT_EQ(rig.files.size(), 1U);
    const std::vector<QByteArray> frames = mpegFrames(fileBytes(rig.files[0].path));
    EXPECT_EQ(std::count_if(frames.begin(), frames.end(), isMp3InfoFrame), 1);
    EXPECT_NEAR(probedSeconds(rig.files[0].path), 12.0, 0.12);
}

TEST(Mp3CutFile, TagsAndTornFramesCostNoWholeFrame) {
    const QByteArray stream = mp3(kHundredTwentyEight);
    const std::vector<QByteArray> frames = mpegFrames(stream);
    QByteArray tag("ID3\x04", 4);
    tag += QByteArray("\0\0\0\0\x01\x00", 6) + QByteArray(128, '\xFF');
    QByteArray served;
    QByteArray expected;
    for (std::size_t n = 0; n < frames.size(); ++n) {
        if (n == 100)
            served += tag;
        if (n == 150)
            served += frames[n - 3].left(200); // a source that was cut off
        served += frames[n];
        expected += frames[n];
    }
    RecorderRig rig;
    rig.start();
    rig.feed(served);
    rig.stop();
    ASSERT_EQ(rig.files.size(), 1U);
    EXPECT_TRUE(audioOf(rig.files[0].path) == expected);
    EXPECT_EQ(decodedByFfmpeg(rig.files[0].path).messages.toStdString(), "");
}

TEST(Mp3CutFile, ReconnectInTheMiddleOfAFrameGoesOnInTheFile) {
    const QByteArray stream = mp3(kHundredTwentyEight);
    RecorderRig rig;
    rig.start();
    rig.feed(stream.left(50100));
    rig.feed(stream.mid(90055, 60001));
    rig.feed(QByteArray("short"));
    rig.feed(stream.mid(10));
    rig.stop();
    ASSERT_EQ(rig.files.size(), 1U);
    const QByteArray expected = wholeFrames(stream, 0, 50100) + wholeFrames(stream, 90055, 150056) +
                                wholeFrames(stream, 10, stream.size());
    EXPECT_TRUE(audioOf(rig.files[0].path) == expected);
    for (const auto decode : {&decodedByFfmpeg, &decodedByMpg123}) {
        const Decoded decoded = decode(rig.files[0].path);
        EXPECT_EQ(decoded.messages.toStdString(), "");
        EXPECT_EQ(decoded.samples.size() / 2, mpegFrames(expected).size() * 1152);
    }
}
