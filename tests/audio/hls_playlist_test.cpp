#include "audio/hls/hls_plan.h"
#include "audio/hls/hls_playlist.h"

#include <gtest/gtest.h>

using namespace BASS;
using namespace std::chrono_literals;

namespace {

HlsPlaylist media(const std::string& lines) {
    return parseHlsPlaylist("#EXTM3U\n#EXT-X-TARGETDURATION:6\n" + lines);
}

/// Six seconds each, numbered from `first` on.
HlsPlaylist window(std::uint64_t first, std::size_t count, bool hasEnd = false) {
    HlsPlaylist list;
    list.kind = HlsPlaylist::Kind::Media;
    list.targetSeconds = 6.0;
    list.hasEnd = hasEnd;
    for (std::size_t n = 0; n < count; ++n) {
        HlsSegment segment;
        segment.sequence = first + n;
        segment.seconds = 6.0;
        list.segments.push_back(segment);
    }
    return list;
}

} // namespace

TEST(HlsPlaylist, TellsItsKindByItsTags) {
    using Kind = HlsPlaylist::Kind;
    const std::pair<const char*, Kind> cases[] = {
        {"", Kind::None},
        {"#EXTM3", Kind::None},
        {"#EXTM3U\n#EXTINF:-1,Station\nhttp://host/stream\n", Kind::None}, // a plain list
        {"http://host/stream\n", Kind::None},
        {"<html>", Kind::None},
        {"#EXTM3U\n#EXT-X-TARGETDURATION:6\n", Kind::Media},
        {"\xEF\xBB\xBF#EXTM3U\r#EXT-X-MEDIA-SEQUENCE:4\r", Kind::Media},
        {"#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nx.m3u8\n", Kind::Master},
        {"#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\n", Kind::None}, // no address follows
    };
    for (const auto& [text, kind] : cases)
        EXPECT_EQ(parseHlsPlaylist(text).kind, kind) << text;
}

TEST(HlsPlaylist, ReadsWhatSegmentsNeed) {
    const HlsPlaylist list = media("#EXT-X-MEDIA-SEQUENCE:7\r\n"
                                   "#EXT-X-MAP:URI=\"init,a.mp4\",BYTERANGE=\"600@10\"\r\n"
                                   "#EXTINF:5.5,Artist - Title, live\r\n"
                                   "#EXT-X-BYTERANGE:100@1000\r\n"
                                   "a.mp4\r\n"
                                   "#EXT-X-KEY:METHOD=AES-128,URI=\"k?a=1,2\",IV=0xFF01\r\n"
                                   "#EXT-X-DISCONTINUITY\r\n"
                                   "#EXTINF:6,\r\n"
                                   "#EXT-X-BYTERANGE:50\r\n"
                                   "a.mp4\r\n"
                                   "#EXT-X-KEY:METHOD=NONE\r\n"
                                   "#EXT-X-GAP\r\n"
                                   "#EXTINF:6\r\n"
                                   "b.mp4\r\n"
                                   "stray address\r\n"
                                   "#EXT-X-ENDLIST\r\n");
    ASSERT_EQ(list.segments.size(), 3U);
    const HlsSegment& a = list.segments[0];
    EXPECT_EQ(a.sequence, 7U);
    EXPECT_EQ(a.info, "5.5,Artist - Title, live");
    EXPECT_DOUBLE_EQ(a.seconds, 5.5);
    EXPECT_TRUE((a.resource == HlsResource{"a.mp4", 1000, 100}));
    EXPECT_TRUE((a.map == HlsResource{"init,a.mp4", 10, 600}));
    EXPECT_EQ(a.key.method, HlsKey::Method::None);
    const HlsSegment& b = list.segments[1];
    EXPECT_TRUE((b.resource == HlsResource{"a.mp4", 1100, 50})); // goes on where the last one ended
    EXPECT_EQ(b.key.method, HlsKey::Method::Aes128);
    EXPECT_EQ(b.key.uri, "k?a=1,2");
    ASSERT_TRUE(b.key.iv);
    EXPECT_EQ((*b.key.iv)[14], 0xFF);
    EXPECT_EQ((*b.key.iv)[15], 0x01);
    EXPECT_TRUE(b.breaksOff);
    const HlsSegment& c = list.segments[2];
    EXPECT_TRUE(c.isMissing);
    EXPECT_FALSE(c.breaksOff);
    EXPECT_EQ(c.key.method, HlsKey::Method::None);
    EXPECT_EQ(c.resource.length, 0U);
    EXPECT_TRUE(list.hasEnd);
}

TEST(HlsPlaylist, NonsenseIsPassedOver) {
    const HlsPlaylist list =
        media("#EXTINF:nan,x\na\n#EXTINF:-5,x\nb\n#EXTINF:1e300,x\nc\n"
              "#EXT-X-MEDIA-SEQUENCE:99999999999999999999999\n#EXT-X-KEY:METHOD\n"
              "#EXT-X-KEY:METHOD=AES-128,IV=0xZZ\n#EXT-X-BYTERANGE:@\n#EXTINF:1,\nd\n");
    ASSERT_EQ(list.segments.size(), 4U);
    for (const HlsSegment& segment : list.segments)
        EXPECT_TRUE(segment.seconds >= 0.0 && segment.seconds <= 1.0) << segment.seconds;
    // the first number may stand behind segments: they are numbered without a gap all the same
    const HlsPlaylist late = media("#EXTINF:1,\na\n#EXT-X-MEDIA-SEQUENCE:8\n#EXTINF:1,\nb\n");
    ASSERT_EQ(late.segments.size(), 2U);
    EXPECT_EQ(late.segments[0].sequence, 8U);
    EXPECT_EQ(late.segments[1].sequence, 9U);
    std::string many = "#EXTM3U\n#EXT-X-TARGETDURATION:1\n";
    for (int n = 0; n < 250000; ++n)
        many += "#EXTINF:1,\ns\n";
    const HlsPlaylist bounded = parseHlsPlaylist(many);
    EXPECT_LE(bounded.segments.size(), kMaxHlsSegments);
    EXPECT_EQ(bounded.segments.back().sequence, 249999U); // the newest are kept
}

TEST(HlsPlan, ChoosesSoundAloneAndTheBestOfIt) {
    using Uris = std::vector<std::string>;
    const std::pair<const char*, Uris> cases[] = {
        {"#EXT-X-STREAM-INF:BANDWIDTH=64000,CODECS=\"mp4a.40.5\"\nlow\n"
         "#EXT-X-STREAM-INF:BANDWIDTH=256000,CODECS=\"mp4a.40.2\"\nhigh\n",
         {"high", "low"}},
        {"#EXT-X-STREAM-INF:BANDWIDTH=5000000,RESOLUTION=1920x1080\nbig\n"
         "#EXT-X-STREAM-INF:BANDWIDTH=300000,CODECS=\"avc1.42,mp4a.40.2\"\nsmall\n"
         "#EXT-X-STREAM-INF:BANDWIDTH=64000,CODECS=\"mp4a.40.2\"\nsound\n",
         {"sound", "small", "big"}},
        {"#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",URI=\"other\"\n"
         "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",AUTOSELECT=YES,DEFAULT=YES,URI=\"main\"\n"
         "#EXT-X-MEDIA:TYPE=SUBTITLES,GROUP-ID=\"g\",DEFAULT=YES,URI=\"words\"\n"
         "#EXT-X-STREAM-INF:BANDWIDTH=900000,RESOLUTION=1x1,AUDIO=\"g\"\nfilm\n",
         {"main", "film"}},
        {"#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",DEFAULT=YES\n" // inside the variant itself
         "#EXT-X-STREAM-INF:BANDWIDTH=1,AUDIO=\"g\"\nsound\n"
         "#EXT-X-STREAM-INF:BANDWIDTH=1,AUDIO=\"none\"\nsound\n",
         {"sound"}},
    };
    for (const auto& [text, uris] : cases)
        EXPECT_EQ(hlsChoices(parseHlsPlaylist(std::string("#EXTM3U\n") + text)), uris) << text;
}

TEST(HlsPlan, BeginsThreeFromTheEdge) {
    EXPECT_EQ(hlsFirstSegment(window(5, 10)), 7U);
    EXPECT_EQ(hlsFirstSegment(window(5, 2)), 0U);
    EXPECT_EQ(hlsFirstSegment(window(5, 10, true)), 0U);
    HlsPlaylist list = window(0, 10);
    list.startOffset = 13.0;
    EXPECT_EQ(hlsFirstSegment(list), 2U);
    list.startOffset = -13.0;
    EXPECT_EQ(hlsFirstSegment(list), 7U);
    list.startOffset = 1e9;
    EXPECT_EQ(hlsFirstSegment(list), 9U);
}

TEST(HlsPlan, FollowsTheWindow) {
    using What = HlsNext::What;
    const struct {
        const char* what;
        HlsPlaylist list;
        std::uint64_t last;
        What next;
        std::size_t index;
        bool hasGap;
    } cases[] = {
        {"the next one", window(10, 5), 11, What::Fetch, 2, false},
        {"not yet", window(10, 5), 14, What::Wait, 0, false},
        {"the end", window(10, 5, true), 14, What::End, 0, false},
        {"the window has moved on", window(20, 5), 11, What::Fetch, 0, true},
        {"a server that lags", window(10, 5), 16, What::Wait, 0, false},
        {"numbers that began anew", window(0, 5), 5000, What::Fetch, 2, true},
        {"empty", window(0, 0), 3, What::Wait, 0, false},
        {"empty and ended", window(0, 0, true), 3, What::End, 0, false},
    };
    for (const auto& c : cases) {
        const HlsNext next = hlsNextSegment(c.list, c.last);
        EXPECT_EQ(next.what, c.next) << c.what;
        EXPECT_EQ(next.index, c.index) << c.what;
        EXPECT_EQ(next.hasGap, c.hasGap) << c.what;
    }
}

TEST(HlsPlan, LooksAgainInTime) {
    EXPECT_EQ(hlsReloadPause(window(0, 3), true), 6000ms);
    EXPECT_EQ(hlsReloadPause(window(0, 3), false), 3000ms);
    HlsPlaylist odd;
    EXPECT_GE(hlsReloadPause(odd, false), 500ms);
    odd.targetSeconds = 0.001;
    EXPECT_EQ(hlsReloadPause(odd, true), 500ms);
    odd.targetSeconds = 1e7;
    EXPECT_EQ(hlsReloadPause(odd, true), 30000ms);
}
