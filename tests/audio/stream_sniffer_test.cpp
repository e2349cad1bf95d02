#include "audio/frame_header.h"
#include "audio/stream_sniffer.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace BASS;
using Verdict = SniffResult::Verdict;

namespace {

SniffResult sniff(const QByteArray& bytes, bool isEnd = false, const char* contentType = "") {
    return sniffStream(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                       static_cast<std::size_t>(bytes.size()),
                       isEnd,
                       contentType);
}

/// As a stream arrives: more and more bytes until there is a verdict.
SniffResult sniffGrowing(const QByteArray& bytes) {
    SniffResult result;
    for (int size = 1; size <= bytes.size(); size += 97) {
        result = sniff(bytes.left(size));
        if (result.verdict != Verdict::NeedMore)
            return result;
    }
    return result;
}

} // namespace

TEST(StreamSniffer, KnowsEveryFormatFromItsFirstBytes) {
    const std::pair<Track, StreamFormat> cases[] = {
        {Track::Mp3, StreamFormat::Mpeg},
        {Track::Mp2, StreamFormat::Mpeg},
        {Track::Adts, StreamFormat::Adts},
        {Track::Vorbis, StreamFormat::OggVorbis},
        {Track::Opus, StreamFormat::OggOpus},
        {Track::OggFlac, StreamFormat::OggFlac},
        {Track::Flac, StreamFormat::Flac},
        {Track::M4a, StreamFormat::Mp4},
        {Track::Wav, StreamFormat::Wav},
        {Track::Aiff, StreamFormat::Aiff},
    };
    for (const auto& [which, format] : cases) {
        SCOPED_TRACE(static_cast<int>(which));
        QByteArray bytes = track(which);
        SniffResult result = sniffGrowing(bytes);
        if (result.verdict == Verdict::SkipTag) {
            bytes = bytes.mid(static_cast<int>(result.offset));
            result = sniffGrowing(bytes);
        }
        EXPECT_EQ(result.verdict, Verdict::Found);
        EXPECT_EQ(result.format, format);
        EXPECT_EQ(result.offset, 0U);
    }
}

TEST(StreamSniffer, FindsFramesFromTheMiddleOfAStream) {
    std::mt19937 random(1);
    for (const Track which : {Track::Mp3, Track::Mp3Joint, Track::Mp2, Track::Adts}) {
        const QByteArray& bytes = track(which);
        const auto format = which == Track::Adts ? StreamFormat::Adts : StreamFormat::Mpeg;
        for (int n = 0; n < 250; ++n) {
            const int start = 2000 + static_cast<int>(random() % 10000);
            const SniffResult result = sniff(bytes.mid(start, 8192));
            ASSERT_EQ(result.verdict, Verdict::Found) << start;
            ASSERT_EQ(result.format, format) << start;
            ASSERT_LT(result.offset, 2000U) << start;
        }
    }
}

TEST(StreamSniffer, TakesNothingElseForAudio) {
    const std::string cases[] = {
        "<!DOCTYPE html><html><head><title>Not found</title>",
        "\r\n  <HTML><body>busy</body>",
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>",
        "#EXTM3U\n#EXTINF:-1,Radio\nhttp://host/stream\n",
        "[playlist]\nFile1=http://host/stream\n",
        "http://host/stream-one\nhttp://host/stream-two\n",
        "{\"error\": \"no such mount\"}",
    };
    for (const std::string& text : cases)
        EXPECT_EQ(sniff(QByteArray::fromStdString(text), true).verdict, Verdict::NotAudio) << text;

    std::mt19937 random(2);
    for (int n = 0; n < 300; ++n) {
        QByteArray bytes(static_cast<int>(kSniffBytes), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        ASSERT_EQ(sniff(bytes).verdict, Verdict::NotAudio) << n;
    }
    EXPECT_EQ(sniff(QByteArray(static_cast<int>(kSniffBytes), '\0')).verdict, Verdict::NotAudio);
    EXPECT_EQ(sniff(QByteArray(), true).verdict, Verdict::NotAudio);
}

TEST(StreamSniffer, SaysHowLongATagIs) {
    // size 2*128+1 = 257 bytes and the header's ten
    const QByteArray tag = QByteArray("ID3\x04\x00\x00\x00\x00\x02\x01", 10) + QByteArray(90, 'x');
    const SniffResult result = sniff(tag);
    EXPECT_EQ(result.verdict, Verdict::SkipTag);
    EXPECT_EQ(result.offset, 267U);
}

TEST(StreamSniffer, DecidesShortStreamsAtTheirEnd) {
    const QByteArray& adts = track(Track::Adts);
    int end = 0;
    for (int n = 0; n < 2; ++n) {
        const auto frame =
            parseAdtsFrame(reinterpret_cast<const std::uint8_t*>(adts.constData()) + end, 7);
        ASSERT_TRUE(frame);
        end += static_cast<int>(frame->bytes);
    }
    const QByteArray twoFrames = adts.left(end);
    EXPECT_EQ(sniff(twoFrames).verdict, Verdict::NeedMore);
    const SniffResult result = sniff(twoFrames, true);
    EXPECT_EQ(result.verdict, Verdict::Found);
    EXPECT_EQ(result.format, StreamFormat::Adts);
}
