#include "audio/encoder_options.h"

#include <gtest/gtest.h>

using namespace BASS;
using Kind = EncoderKind;
using Mode = EncoderOptions::Mode;

TEST(EncoderOptions, ReadsWhatTheTemplatesProduce) {
    struct Case {
        Kind kind;
        const char* text;
        Mode mode;
        int bitrate;
        int minimum;
        int maximum;
        double quality; ///< -100: none
    };
    constexpr double kNone = -100;
    const Case cases[] = {
        {Kind::Mp3, "--cbr -b128", Mode::Constant, 128000, 0, 0, kNone},
        {Kind::Mp3, "--cbr -b128000", Mode::Constant, 128000, 0, 0, kNone},
        {Kind::Mp3, "--cbr -b 320 -t -m mono", Mode::Constant, 320000, 0, 0, kNone},
        {Kind::Mp3, "--vbr-new -V4", Mode::Variable, 0, 0, 0, 4},
        {Kind::Mp3, "--vbr-new -V0 -b96 -B192", Mode::Variable, 0, 96000, 192000, 0},
        {Kind::Mp3, "--abr 160", Mode::Average, 160000, 0, 0, kNone},
        {Kind::Mp3, "-V 4", Mode::Variable, 0, 0, 0, 4},
        {Kind::Vorbis, "-b128 -m96 -M192", Mode::Average, 128000, 96000, 192000, kNone},
        {Kind::Vorbis, "-q-1", Mode::Variable, 0, 0, 0, -1},
        {Kind::Vorbis, "-q 4.5", Mode::Variable, 0, 0, 0, 4.5},
        {Kind::Aac, "--br 64000", Mode::Default, 64000, 0, 0, kNone},
        {Kind::Wma, "--cbr -b128000 -s44100 -c2", Mode::Constant, 128000, 0, 0, kNone},
        {Kind::Wma, "--vbr -q75 -s44100 -c2", Mode::Variable, 0, 0, 0, 75},
        {Kind::Mp3, "  ", Mode::Default, 0, 0, 0, kNone},
        {Kind::Mp3, "--what --cbr -b96", Mode::Constant, 96000, 0, 0, kNone},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const auto options = parseEncoderOptions(c.kind, c.text);
        ASSERT_TRUE(options);
        EXPECT_EQ(options->mode, c.mode);
        EXPECT_EQ(options->bitrate, c.bitrate);
        EXPECT_EQ(options->minBitrate, c.minimum);
        EXPECT_EQ(options->maxBitrate, c.maximum);
        EXPECT_EQ(options->quality.value_or(kNone), c.quality);
    }
    const auto flac = parseEncoderOptions(Kind::Flac, "--compression-level-8 --ogg");
    ASSERT_TRUE(flac);
    EXPECT_EQ(flac->compression, 8);
    EXPECT_TRUE(flac->isOgg);
    const auto wma = parseEncoderOptions(Kind::Wma, "--cbr -b64 -s32000 -c1");
    ASSERT_TRUE(wma);
    EXPECT_EQ(wma->sampleRate, 32000);
    EXPECT_EQ(wma->channels, 1);
}

TEST(EncoderOptions, RefusesNumbersThatMakeNoSense) {
    const std::pair<Kind, const char*> cases[] = {
        {Kind::Mp3, "--cbr -b"},
        {Kind::Mp3, "--cbr -bmany"},
        {Kind::Mp3, "-V10"},
        {Kind::Mp3, "--abr -5"},
        {Kind::Mp3, "--abr 1e300"},
        {Kind::Mp3, "--abr nan"},
        {Kind::Vorbis, "-q11"},
        {Kind::Vorbis, "-b128 -m192 -M96"},
        {Kind::Flac, "--compression-level-9"},
        {Kind::Wma, "--cbr -b128 -s44100 -c6"},
        {Kind::Wma, "--vbr -q0"},
    };
    for (const auto& [kind, text] : cases)
        EXPECT_FALSE(parseEncoderOptions(kind, text)) << text;
}
