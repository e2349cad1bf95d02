#include "audio/ffmpeg/icy_demux.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using BASS::IcyDemux;

namespace {

struct Heard final : IcyDemux::Sink {
    std::string bytes;
    std::vector<std::pair<std::size_t, std::string>> titles; ///< audio bytes before it, text

    void audio(const std::uint8_t* data, std::size_t size) override {
        bytes.append(reinterpret_cast<const char*>(data), size);
    }
    void title(std::string_view block) override { titles.emplace_back(bytes.size(), block); }
    bool operator==(const Heard& o) const { return bytes == o.bytes && titles == o.titles; }
};

std::string block(const std::string& text, std::size_t units) {
    std::string result(1, static_cast<char>(units));
    result += text;
    result.resize(1 + units * 16, '\0');
    return result;
}

Heard demux(std::int64_t metaint, const std::string& stream, std::size_t chunk) {
    Heard heard;
    IcyDemux icy(metaint, heard);
    const auto* const data = reinterpret_cast<const std::uint8_t*>(stream.data());
    for (std::size_t at = 0; at < stream.size(); at += chunk)
        icy.feed(data + at, std::min(chunk, stream.size() - at));
    return heard;
}

struct Case {
    const char* name;
    std::int64_t metaint;
    std::string stream;
    std::string audio;
    std::vector<std::pair<std::size_t, std::string>> titles;
};

std::vector<Case> cases() {
    const std::string longText(4080, 'x');
    return {
        {"no metaint", 0, "abcdef", "abcdef", {}},
        {"negative metaint", -5, "abcdef", "abcdef", {}},
        {"absurd metaint", std::int64_t{1} << 40, "abcdef", "abcdef", {}},
        {"empty blocks", 4, std::string("abcd\0efgh\0ij", 12), "abcdefghij", {}},
        {"title then empty",
         4,
         "abcd" + block("StreamTitle='A';", 1) + std::string("efgh\0ij", 7),
         "abcdefghij",
         {{4, "StreamTitle='A';"}}},
        {"metaint of one",
         1,
         "a" + block("t", 1) + "b" + block("u", 2),
         "ab",
         {{1, "t"}, {2, "u"}}},
        {"largest block", 3, "abc" + block(longText, 255) + "def", "abcdef", {{3, longText}}},
        {"block of zeros only", 3, "abc" + block("", 7) + "def", "abcdef", {}},
        {"ends inside a block", 3, "abc" + block("title", 2).substr(0, 9), "abc", {}},
        {"title holds the length byte's value",
         2,
         "ab" + block("\x01\x02", 1) + "cd",
         "abcd",
         {{2, "\x01\x02"}}},
    };
}

} // namespace

TEST(IcyDemux, TakesTitlesOutAtEveryChunkSize) {
    for (const Case& each : cases()) {
        SCOPED_TRACE(each.name);
        for (std::size_t chunk = 1; chunk <= each.stream.size(); chunk += chunk < 64 ? 1 : 501) {
            const Heard heard = demux(each.metaint, each.stream, chunk);
            ASSERT_EQ(heard.bytes, each.audio) << "chunk=" << chunk;
            ASSERT_EQ(heard.titles, each.titles) << "chunk=" << chunk;
        }
    }
}

TEST(IcyDemux, SplitsAnywhere) {
    const std::string stream = "abcd" + block("StreamTitle='A';", 1) + "efgh" +
                               block("StreamTitle='Longer one';", 3) + "ij";
    const Heard whole = demux(4, stream, stream.size());
    for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
        Heard heard;
        IcyDemux icy(4, heard);
        const auto* const data = reinterpret_cast<const std::uint8_t*>(stream.data());
        icy.feed(data, cut);
        icy.feed(data + cut, stream.size() - cut);
        ASSERT_TRUE(heard == whole) << "cut=" << cut;
    }
}
