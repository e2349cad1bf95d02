#include "audio/ffmpeg/reservoir_gate.h"
#include "audio/frame_header.h"
#include "audio/tracks.h"
#include "audio/vorbis_comment.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

using namespace BASS;

namespace {

const std::uint8_t* bytesOf(const QByteArray& data) {
    return reinterpret_cast<const std::uint8_t*>(data.constData());
}

} // namespace

TEST(FrameHeader, ReadsMpegHeaders) {
    struct Case {
        std::array<std::uint8_t, 4> header;
        int version, layer, bitrate, rate, samples;
        std::size_t bytes;
    };
    const Case cases[] = {
        {{0xFF, 0xFB, 0x90, 0x00}, 1, 3, 128000, 44100, 1152, 417},
        {{0xFF, 0xFB, 0x92, 0x00}, 1, 3, 128000, 44100, 1152, 418},
        {{0xFF, 0xF3, 0x80, 0xC0}, 2, 3, 64000, 22050, 576, 208},
        {{0xFF, 0xE3, 0x18, 0xC0}, 25, 3, 8000, 8000, 576, 72},
        {{0xFF, 0xFD, 0xA4, 0x00}, 1, 2, 192000, 48000, 1152, 576},
    };
    for (const Case& each : cases) {
        const auto frame = parseMpegFrame(each.header.data(), each.header.size());
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->version, each.version);
        EXPECT_EQ(frame->layer, each.layer);
        EXPECT_EQ(frame->bitrate, each.bitrate);
        EXPECT_EQ(frame->sampleRate, each.rate);
        EXPECT_EQ(frame->samples, each.samples);
        EXPECT_EQ(frame->bytes, each.bytes);
    }
}

TEST(FrameHeader, WalksWholeFilesFrameByFrame) {
    const QByteArray& adts = track(Track::Adts);
    int at = 0;
    int frames = 0;
    while (const auto frame =
               parseAdtsFrame(bytesOf(adts) + at, static_cast<std::size_t>(adts.size() - at))) {
        at += static_cast<int>(frame->bytes);
        ++frames;
        if (at == adts.size())
            break;
    }
    EXPECT_EQ(at, adts.size());
    EXPECT_NEAR(frames * 1024 / 44100.0, kTrackSeconds, 0.1);
}

TEST(ReservoirGate, DropsUntilTheReservoirIsFull) {
    const QByteArray& mp3 = track(Track::Mp3Joint);
    const auto judge = [&mp3](int skip) { // verdicts from the skip-th frame on
        ReservoirGate gate;
        std::string verdicts;
        int at = 0;
        for (int n = 0; n < skip + 30; ++n) {
            const auto left = static_cast<std::size_t>(mp3.size() - at);
            const auto frame = parseMpegFrame(bytesOf(mp3) + at, left);
            if (!frame)
                return std::string("broken");
            if (n >= skip)
                switch (gate.judge(bytesOf(mp3) + at, frame->bytes)) {
                case ReservoirGate::Verdict::Play:
                    verdicts += 'p';
                    break;
                case ReservoirGate::Verdict::PlayFirst:
                    verdicts += 'f';
                    break;
                case ReservoirGate::Verdict::Drop:
                    verdicts += 'd';
                    break;
                }
            at += static_cast<int>(frame->bytes);
        }
        return verdicts;
    };
    EXPECT_EQ(judge(0), std::string(30, 'p')); // a beginning loses nothing
    const std::string joined = judge(40);
    const std::size_t first = joined.find('f');
    ASSERT_NE(first, std::string::npos) << joined;
    EXPECT_GE(first, 2U) << joined; // one to fill the reservoir, one for the overlap
    EXPECT_LE(first, 8U) << joined;
    EXPECT_EQ(joined, std::string(first, 'd') + 'f' + std::string(29 - first, 'p'));
}

TEST(VorbisComment, AnswersLyingLengthsWithWhatWasReadable) {
    const std::string good("\x02\0\0\0vv\x02\0\0\0\x07\0\0\0title=A\x08\0\0\0artist=B", 33);
    const auto* const data = reinterpret_cast<const std::uint8_t*>(good.data());
    const auto all = parseVorbisComments(data, good.size());
    ASSERT_TRUE(all);
    EXPECT_EQ(all->value("TITLE"), "A");
    EXPECT_EQ(all->value("Artist"), "B");
    EXPECT_EQ(all->value("art"), "");
    for (std::size_t size = 0; size < good.size(); ++size) {
        const auto some = parseVorbisComments(data, size);
        EXPECT_EQ(some.has_value(), size >= 6) << size;
        EXPECT_EQ(some && some->value("title") == "A", size >= 21) << size;
    }
}
