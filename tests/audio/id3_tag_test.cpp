#include "audio/id3_tag.h"
#include "support/hls_station.h"

#include <gtest/gtest.h>

using namespace BASS;

namespace {

std::optional<Id3Texts> parse(const std::string& tag) {
    return parseId3Tag(reinterpret_cast<const std::uint8_t*>(tag.data()), tag.size());
}

/// A tag of one frame; size and flags as the version writes them.
std::string tag(char version, char flags, const std::string& id, const std::string& body) {
    const auto small = static_cast<char>(body.size());
    std::string frame = id;
    frame += version == 2 ? std::string("\0\0", 2) : std::string("\0\0\0", 3);
    frame += small;
    if (version > 2)
        frame += std::string("\0\0", 2);
    frame += body;
    return std::string("ID3") + version + '\0' + flags + std::string("\0\0\0", 3) +
           static_cast<char>(frame.size()) + frame;
}

std::string bytes(std::initializer_list<int> list) {
    std::string out;
    for (const int byte : list)
        out += static_cast<char>(byte);
    return out;
}

} // namespace

TEST(Id3Tag, ReadsEveryVersionAndEncoding) {
    const std::pair<const char*, std::string> titles[] = {
        {"Caf\xC3\xA9", tag(4, 0, "TIT2", bytes({3}) + "Caf\xC3\xA9")},
        {"Caf\xC3\xA9", tag(3, 0, "TIT2", bytes({0}) + "Caf\xE9" + bytes({0}))},
        {"Caf\xC3\xA9", tag(2, 0, "TT2", bytes({0}) + "Caf\xE9")},
        {"\xD0\x96", tag(3, 0, "TIT2", bytes({1, 0xFF, 0xFE, 0x16, 0x04}))},
        {"\xD0\x96", tag(4, 0, "TIT2", bytes({1, 0xFE, 0xFF, 0x04, 0x16, 0, 0}))},
        {"\xF0\x9F\x8E\xB5", tag(4, 0, "TIT2", bytes({2, 0xD8, 0x3C, 0xDF, 0xB5}))},
        {"\xEF\xBF\xBD", tag(4, 0, "TIT2", bytes({2, 0xD8, 0x3C}))}, // half a pair
        {"a / b", tag(4, 0, "TIT2", bytes({3}) + "a" + bytes({0}) + "b")},
        {"\xC3\xBF!", tag(3, '\x80', "TIT2", bytes({0, 0xFF, 0x00, '!'}))}, // unsynchronised
        {"", tag(4, 0, "TIT2", bytes({9}) + "what")},
        {"", tag(4, 0, "TXXX", bytes({3}) + "other")},
    };
    for (const auto& [title, given] : titles) {
        const auto texts = parse(given);
        ASSERT_TRUE(texts) << title;
        EXPECT_EQ(texts->title, title);
    }
    const std::string both = id3Tag("Art", "Song").toStdString();
    EXPECT_EQ(parse(both)->artist, "Art");
    EXPECT_EQ(parse(both)->title, "Song");
}

TEST(Id3Tag, LiesOfLengthAreAnsweredWithWhatIsThere) {
    const std::string whole = id3Tag("Art", "Song").toStdString();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto texts = parse(whole.substr(0, size)); // the sanitizers look on
        EXPECT_EQ(texts.has_value(), size >= kId3HeaderBytes) << size;
    }
    std::string huge = whole;
    huge[6] = huge[7] = huge[8] = huge[9] = 0x7F;
    EXPECT_EQ(parse(huge)->title, "Song");
    huge[6] = static_cast<char>(0x80); // no number of this kind
    EXPECT_FALSE(parse(huge));
    EXPECT_FALSE(parse("ID4\4\0\0\0\0\0\0"));
}
