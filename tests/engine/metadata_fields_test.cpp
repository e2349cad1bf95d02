#include "engine/metadata_fields.h"
#include "engine/title_decoder.h"

#include <gtest/gtest.h>

using BASS::decodeIcyBlock;
using BASS::songFromFields;
using BASS::songFromSegmentInfo;

namespace {

struct Case {
    const char* text;
    const char* artist;
    const char* title;
};

} // namespace

TEST(MetadataFields, TellTheSong) {
    const Case cases[] = {
        {R"(title="Song",artist="Artist",url="http://x/?title=no")", "Artist", "Song"},
        {R"(text="Song" song_spot="M" artist='Artist')", "", "Artist"},
        {"artist=Artist&title=Two%20Words&duration=215", "Artist", "Two Words"},
        {"title=A, B and C, artist=Artist", "Artist", "A, B and C"},
        {"currentArtist=Artist;currentSong=Song;artist=Station", "Artist", "Song"},
        {R"({"artist": "Artist", "title": "The \"Song\"", "duration": 3})",
         "Artist",
         R"(The "Song")"},
        {"CAPTION=Artist - Song", "Artist", "Song"},
        {"text : Artist - Song", "Artist", "Song"},
        {"TUNER=artist=Artist&title=Song", "Artist", "Song"},
        {"data=artist%3DArtist%26title%3DSong", "Artist", "Song"},
        {"XML=<song><Title>A &amp; B</Title><artist><![CDATA[X & Y]]></artist></song>",
         "X & Y",
         "A & B"},
    };
    for (const Case& c : cases) {
        const auto song = songFromFields(QString::fromUtf8(c.text));
        ASSERT_TRUE(song) << c.text;
        EXPECT_EQ(song->artist.toStdString(), c.artist) << c.text;
        EXPECT_EQ(song->title.toStdString(), c.title) << c.text;
    }
}

TEST(MetadataFields, AreNotSeenInPlainTitles) {
    for (const char* const text : {"Artist - Song",
                                   "",
                                   "Artist - The Title: Part 2",
                                   "Subtitle=1",
                                   "Artist - Text",
                                   "duration=12",
                                   "artist=",
                                   "title=\"\"",
                                   "E=mc2"})
        EXPECT_FALSE(songFromFields(QString::fromUtf8(text))) << text;
}

TEST(MetadataFields, ReachTheTitleOfABlockAndOfASegment) {
    EXPECT_EQ(decodeIcyBlock("StreamTitle='artist=\"A\" title=\"B\"';", {})->track,
              QStringLiteral("A - B"));
    EXPECT_EQ(decodeIcyBlock("artist=A;title=B;", {})->track, QStringLiteral("A - B"));
    EXPECT_EQ(decodeIcyBlock("StreamUrl='http://x';", {})->track, QString());
    const std::pair<const char*, const char*> infos[] = {
        {"10.0,Artist - Song", "Artist - Song"},
        {R"(9.9,title="Song",artist="Artist")", "Artist - Song"},
        {"6.0,", ""},
        {"6", ""},
        {"6,no desc", ""},
        {"6,audio_128_0001.aac", ""},
    };
    for (const auto& [info, track] : infos) {
        const auto song = songFromSegmentInfo(info);
        EXPECT_EQ(song ? song->track.toStdString() : "", track) << info;
    }
}
