#include "audio/ogg_link_splitter.h"
#include "audio/tracks.h"
#include "audio/vorbis_comment.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace BASS;

namespace {

struct Seen final : OggLinkSplitter::Sink {
    std::string out;
    std::vector<std::size_t> links; ///< bytes before each
    std::vector<std::string> titles;
    std::vector<std::size_t> titleAt;
    std::vector<std::string> headers;

    void bytes(const std::uint8_t* data, std::size_t size) override {
        out.append(reinterpret_cast<const char*>(data), size);
    }
    void linkBegins() override { links.push_back(out.size()); }
    void comments(const std::uint8_t* data, std::size_t size) override {
        const auto parsed = parseVorbisComments(data, size);
        titles.push_back(parsed ? parsed->value("title") : "unreadable");
        titleAt.push_back(out.size());
    }
    void headersComplete(const std::vector<std::uint8_t>& pages) override {
        headers.emplace_back(pages.begin(), pages.end());
    }
};

Seen split(const std::string& stream, std::size_t chunk) {
    Seen seen;
    OggLinkSplitter splitter(seen);
    const auto* const data = reinterpret_cast<const std::uint8_t*>(stream.data());
    for (std::size_t at = 0; at < stream.size(); at += chunk)
        splitter.feed(data + at, std::min(chunk, stream.size() - at));
    splitter.finish();
    return seen;
}

} // namespace

TEST(OggLinkSplitter, FindsLinksAndTitlesAtEveryChunkSize) {
    const std::string one = track(Track::Vorbis, "One").toStdString();
    const std::string two = track(Track::Opus, "Two").toStdString();
    const std::string three = track(Track::OggFlac, "Three").toStdString();
    const std::string chain = one + two + three;
    const std::vector<std::size_t> links{0, one.size(), one.size() + two.size()};
    for (const std::size_t chunk :
         std::initializer_list<std::size_t>{1, 2, 5, 27, 100, 4096, 1 << 20}) {
        SCOPED_TRACE(chunk);
        const Seen seen = split(chain, chunk);
        EXPECT_TRUE(seen.out == chain);
        EXPECT_EQ(seen.links, links);
        EXPECT_EQ(seen.titles, (std::vector<std::string>{"One", "Two", "Three"}));
        ASSERT_EQ(seen.headers.size(), 3U);
        for (std::size_t n = 0; n < 3; ++n) { // a copy of what stands at the link's begin
            EXPECT_EQ(chain.compare(links[n], seen.headers[n].size(), seen.headers[n]), 0);
            EXPECT_GT(seen.titleAt[n], links[n]);
            EXPECT_LE(seen.titleAt[n], links[n] + seen.headers[n].size());
        }
    }
}

TEST(OggLinkSplitter, LosesNothingToRubbish) {
    const std::string one = track(Track::Vorbis, "One").toStdString();
    const std::string two = track(Track::Opus, "Two").toStdString();
    const std::string rubbish = "OggOgOggS\x07 not a page OggX";
    const std::string tail = "OggS\0\0half a page"; // ends at its zero
    const std::string stream = rubbish + one + rubbish + two + tail;
    for (const std::size_t chunk : std::initializer_list<std::size_t>{1, 3, 1000, 1 << 20}) {
        SCOPED_TRACE(chunk);
        const Seen seen = split(stream, chunk);
        EXPECT_TRUE(seen.out == stream);
        EXPECT_EQ(seen.links,
                  (std::vector<std::size_t>{rubbish.size(), 2 * rubbish.size() + one.size()}));
        EXPECT_EQ(seen.titles, (std::vector<std::string>{"One", "Two"}));
    }
}

TEST(OggLinkSplitter, AnotherFormatIsALink) {
    const std::string one = track(Track::Vorbis, "One").toStdString();
    const std::string two = track(Track::Opus, "Two").toStdString();
    const std::string mp3 = track(Track::Mp3).toStdString();
    const std::string noise(70000, '\x55'); // a long page whose beginning is damaged
    ASSERT_GT(mp3.size(), 20000U);
    const Seen seen = split(one + mp3 + two + noise + two, 1000);
    ASSERT_EQ(seen.links.size(), 4U);
    EXPECT_EQ(seen.links[1], one.size());
    EXPECT_EQ(seen.links[2], one.size() + mp3.size());
    EXPECT_EQ(seen.links[3], one.size() + mp3.size() + two.size() + noise.size());
    EXPECT_TRUE(seen.out == one + mp3 + two + noise + two);
    EXPECT_TRUE(split(mp3, 1000).links.empty()); // never was Ogg
}
