#include "recording/encoder_start.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace BASS;

CEncoderParams params(int encoder, EncoderMode mode, int bitrate, int least = 0, int most = 0) {
    CEncoderParams result(encoder);
    result.mode = mode;
    if (bitrate > 0)
        result.setBitrate(bitrate);
    result.setBitrateRange(least, most);
    return result;
}

std::string external(int encoder, const ExternalEncoding& encoding) {
    return externalArguments(encoder, encoding).toStdString();
}

} // namespace

TEST(EncoderParams, BuildsAndReadsItsStrings) {
    const auto cbr = EncoderMode::ConstantBitrate;
    const auto vbr = EncoderMode::VariableBitrate;
    const auto quality = EncoderMode::Quality;
    struct Case {
        CEncoderParams params;
        const char* text;
    };
    const std::vector<Case> cases{
        {params(EncoderMp3, cbr, 128), "--cbr -b128"},
        {params(EncoderMp3, cbr, 128000), "--cbr -b128"},
        {params(EncoderMp3, EncoderMode::AverageBitrate, 192), "--abr 192"},
        {params(EncoderMp3, vbr, 0), "--vbr-new -V4"},
        {params(EncoderMp3, vbr, 0, 96), "--vbr-new -V4 -b96"},
        {params(EncoderMp3, vbr, 0, 96, 320), "--vbr-new -V4 -b96 -B320"},
        {params(EncoderWma, cbr, 0), "--cbr -b128000 -s44100 -c2"},
        {params(EncoderWma, vbr, 0), "--vbr -q4 -s44100 -c2"},
        {params(EncoderOgg, cbr, 128, 96, 160), "-b128 -m96 -M160"},
        {params(EncoderOgg, quality, 0), "-q4"},
        {params(EncoderFlac, EncoderMode::Compression, 0), "--compression-level-4"},
        {params(EncoderFlacOgg, EncoderMode::Compression, 0), "--compression-level-4"},
        {params(EncoderAacPlus, cbr, 48), "--br 48000"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.params.arguments().toStdString(), c.text);
        CEncoderParams read(c.params.encoder());
        read.parse(QLatin1String(c.text));
        EXPECT_TRUE(read == c.params) << c.text;
    }
    EXPECT_EQ(params(EncoderMp3, vbr, 0, 128, 96).arguments().toStdString(), "--vbr-new -V4 -b128");
    EXPECT_EQ(params(EncoderOgg, cbr, 128, 0, 160).arguments().toStdString(), "");
    for (const int nothing : {0, 5, 7, 9, 11})
        EXPECT_EQ(params(nothing, cbr, 128).arguments().toStdString(), "");
}

TEST(EncoderParams, ReadsForeignStringsAsFarAsItCan) {
    CEncoderParams read(EncoderWma);
    read.parse(QStringLiteral("  --unknown -z9 -b 64 -sxyz -c1 -q"));
    EXPECT_EQ(read.bitrate(), 64000);
    EXPECT_EQ(read.sampleRate, 44100);
    EXPECT_EQ(read.channels, 1);
}

TEST(EncoderTables, ProgramsAndExtensions) {
    struct Case {
        int code;
        const char* program;
        const char* extension;
    };
    const std::vector<Case> cases{
        {0, "", "mp3"},
        {1, "lame.exe", "mp3"},
        {2, "", "wma"},
        {3, "enc_aacplus.exe", "aac"},
        {4, "oggenc2.exe", "ogg"},
        {5, "", "mp3"},
        {6, "flac.exe", "flac"},
        {7, "", "mp3"},
        {8, "faac.exe", "mp3"}, // deliberately
        {9, "", "mp3"},
        {10, "flac.exe", "oga"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(encoderProgram(c.code).toStdString(), c.program) << c.code;
        EXPECT_EQ(encoderExtension(c.code, false).toStdString(), c.extension) << c.code;
        EXPECT_EQ(encoderExtension(c.code, true).toStdString(), std::string(".") + c.extension);
    }
}

TEST(ExternalEncoder, CommandLines) {
    ExternalEncoding e;
    e.sampleRate = 48000;
    e.channels = 2;
    e.bitrate = 128;
    EXPECT_EQ(external(EncoderMp3, e), "--cbr -b 128 -t -r -s 48  - -");
    EXPECT_EQ(external(EncoderOgg, e), "-b 128 -B 16 -C 2 -R 48000");
    EXPECT_EQ(external(EncoderFlac, e),
              "--compression-level-0 --channels=2 --bps=16 --sample-rate=48000");
    EXPECT_EQ(external(EncoderFlacOgg, e),
              "--compression-level-0 --channels=2 --bps=16 --sample-rate=48000 --ogg");
    EXPECT_EQ(external(EncoderAac, e), "-b64 -P -X -R48000 -C2 - -");
    EXPECT_EQ(external(EncoderAacPlus, e), "- - --silent --rawpcm 44100 2 16");
    EXPECT_EQ(external(EncoderWma, e), "");
    EXPECT_EQ(external(5, e), "");

    e.userArguments = QStringLiteral("-b0 -h - -");
    EXPECT_EQ(external(EncoderMp3, e), "-b128 -h - -");
    EXPECT_EQ(external(EncoderAac, e), "-b128 -h - -");
    // what tells the format of the samples stays
    EXPECT_EQ(external(EncoderOgg, e), "-b0 -h - - -B 16 -C 2 -R 48000");
    EXPECT_EQ(external(EncoderFlac, e), "-b0 -h - - --channels=2 --bps=16 --sample-rate=48000");
    e.userArguments = QStringLiteral("--br 0 --he");
    EXPECT_EQ(external(EncoderAacPlus, e), "- - --silent --rawpcm 44100 2 16 --br 128000 --he");
}

TEST(ExternalEncoder, ProgramsGetTheSamplesThatTheirLineSpeaksOf) {
    const struct {
        int encoder;
        int rate;
        const char* own;
        ExternalInput expected;
    } cases[] = {
        {EncoderAacPlus, 48000, "", {44100, 2, false}},
        {EncoderAacPlus, 22050, "", {32000, 2, false}},
        {EncoderMp3, 22050, "", {22050, 2, false}},
        {EncoderMp3, 48000, "-r -s 32 -m mono - -", {32000, 1, false}},
        {EncoderMp3, 48000, "-r -b 128 - -", {44100, 2, false}},
        {EncoderMp3, 48000, "-b0 -h - -", {48000, 2, true}},
        {EncoderAac, 48000, "-P -R24000 -C1 - -", {24000, 1, false}},
        {EncoderAac, 48000, "-b64 - -", {48000, 2, true}},
        {EncoderFlac, 96000, "-8", {96000, 2, false}},
    };
    for (const auto& c : cases) {
        ExternalEncoding e;
        e.sampleRate = c.rate;
        e.channels = 2;
        e.userArguments = QString::fromLatin1(c.own);
        const ExternalInput input = externalInput(c.encoder, e, externalArguments(c.encoder, e));
        SCOPED_TRACE(c.own);
        EXPECT_EQ(input.sampleRate, c.expected.sampleRate) << c.encoder << ' ' << c.rate;
        EXPECT_EQ(input.channels, c.expected.channels);
        EXPECT_EQ(input.hasHeader, c.expected.hasHeader);
    }
}

TEST(ExternalEncoder, ValuesAtTheEdges) {
    ExternalEncoding e;
    const auto mp3 = [&e](int bitrate) {
        e.bitrate = bitrate;
        return external(EncoderMp3, e);
    };
    EXPECT_EQ(mp3(0), "-V 4 -t -r -s 44.1  - -");
    EXPECT_EQ(mp3(5), "-V 5 -t -r -s 44.1  - -");
    EXPECT_EQ(mp3(9), "-V 9 -t -r -s 44.1  - -");
    EXPECT_EQ(mp3(10), "--cbr -t -r -s 44.1  - -");
    EXPECT_EQ(mp3(32), "--cbr -b 32 -t -r -s 44.1  - -");
    EXPECT_EQ(mp3(320), "--cbr -b 320 -t -r -s 44.1  - -");
    EXPECT_EQ(mp3(321), "--cbr -t -r -s 44.1  - -");
    e.channels = 1;
    EXPECT_EQ(mp3(0), "-V 4 -t -r -s 44.1 -m mono  - -");
    for (const auto& [rate, told] : std::vector<std::pair<int, std::string>>{
             {8000, "32000"}, {32000, "32000"}, {32001, "44100"}, {96000, "44100"}, {0, "44100"}}) {
        e.sampleRate = rate;
        EXPECT_EQ(external(EncoderAacPlus, e), "- - --silent --rawpcm " + told + " 1 16");
    }
    e.userArguments = QStringLiteral("--br 0");
    e.bitrate = 0;
    EXPECT_EQ(external(EncoderAacPlus, e), "- - --silent --rawpcm 44100 1 16 --br 64000");
}

TEST(EncoderArguments, FollowBitrateAndMode) {
    const struct {
        int encoder;
        int bitrate;
        EncoderMode mode;
        const char* arguments;
    } cases[] = {
        {EncoderMp3, 128, EncoderMode::ConstantBitrate, "--cbr -b128"},
        {EncoderMp3, 160, EncoderMode::AverageBitrate, "--abr 160"},
        {EncoderMp3, 256, EncoderMode::VariableBitrate, "--vbr-new -V0"},
        {EncoderMp3, 128, EncoderMode::VariableBitrate, "--vbr-new -V6"},
        {EncoderMp3, 5, EncoderMode::ConstantBitrate, "--vbr-new -V5"}, // a quality, no bitrate
        {EncoderMp3, 0, EncoderMode::ConstantBitrate, "--vbr-new -V4"},
        {EncoderWma, 128, EncoderMode::ConstantBitrate, "--cbr -b128000 -s44100 -c2"},
        {EncoderWma, 160, EncoderMode::VariableBitrate, "--vbr -q49 -s44100 -c2"},
        {EncoderOgg, 128, EncoderMode::AverageBitrate, "-q4"},
        {EncoderFlacOgg, 128, EncoderMode::ConstantBitrate, "--compression-level-5 --ogg"},
        {EncoderAacPlus, 64, EncoderMode::ConstantBitrate, "--br 64000"},
        {7, 128, EncoderMode::ConstantBitrate, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(encoderArguments(c.encoder, c.bitrate, c.mode).toStdString(), c.arguments);
}

TEST(EncoderArguments, WmaTakesTheNearestRateOnOffer) {
    const DWORD rates[] = {32000, 64000, 128000, 0};
    EXPECT_EQ(nearestRate(rates, 1), 32000U);
    EXPECT_EQ(nearestRate(rates, 50000), 64000U);
    EXPECT_EQ(nearestRate(rates, 128000), 128000U);
    EXPECT_EQ(nearestRate(rates, 999999), 128000U);
    EXPECT_EQ(nearestRate(nullptr, 1), 0U);
    EXPECT_EQ(nearestRate(rates + 3, 1), 0U);
}
