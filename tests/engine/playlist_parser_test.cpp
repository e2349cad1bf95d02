#include "engine/playlist_parser.h"

#include <gtest/gtest.h>

using BASS::parsePlaylist;
using BASS::PlaylistKind;

TEST(PlaylistParser, TellsByContentWhatItIs) {
    const struct {
        const char* what;
        QByteArray text;
        PlaylistKind kind;
        QStringList addresses;
    } cases[] = {
        {"PLS in any order",
         "\xEF\xBB\xBF[Playlist]\r\nFile10=http://h/10\r\nTitle1=x\r\nFile2=http://h/2\r\nFile1= "
         "http://h/1 \r\n",
         PlaylistKind::Pls,
         {QStringLiteral("http://h/1"),
          QStringLiteral("http://h/2"),
          QStringLiteral("http://h/10")}},
        {"M3U with relative entries",
         "#EXTM3U\n#EXTINF:-1,Name\nlive/one.mp3\n\nhttps://other/x\n",
         PlaylistKind::M3u,
         {QStringLiteral("http://h/lists/live/one.mp3"), QStringLiteral("https://other/x")}},
        {"bare lines",
         "# comment\nhttp://h/a\rmms://h/b\nnot an address\n",
         PlaylistKind::Plain,
         {QStringLiteral("http://h/a"), QStringLiteral("mms://h/b")}},
        {"ASX",
         "<ASX version=\"3\"><Entry><Ref HREF = 'http://h/a?x=1&amp;y=2'/></Entry><entryref "
         "href=\"http://h/b\"/></ASX>",
         PlaylistKind::Asx,
         {QStringLiteral("http://h/a?x=1&y=2"), QStringLiteral("http://h/b")}},
        {"XSPF",
         "<?xml version='1.0'?><playlist "
         "xmlns='http://xspf.org/ns/0/'><trackList><track><location>\n http://h/a "
         "</location></track></trackList></playlist>",
         PlaylistKind::Xspf,
         {QStringLiteral("http://h/a")}},
        {"HTML that points elsewhere",
         "<html><head><title>302 Found</title></head><body><a "
         "href=\"http://h/moved\">here</a></body></html>",
         PlaylistKind::Html,
         {QStringLiteral("http://h/moved")}},
        {"HLS is played itself",
         "#EXTM3U\n#EXT-X-VERSION:3\n#EXTINF:9,\nseg.ts\n",
         PlaylistKind::Hls,
         {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto playlist = parsePlaylist(c.text, QStringLiteral("http://h/lists/a.m3u"));
        EXPECT_EQ(playlist.kind, c.kind);
        EXPECT_EQ(playlist.addresses, c.addresses)
            << playlist.addresses.join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(playlist.message.isEmpty());
    }
}

TEST(PlaylistParser, SaysWhyThereIsNothingAndStaysBounded) {
    const QString address = QStringLiteral("http://h/");
    EXPECT_EQ(parsePlaylist({}, address).message, QStringLiteral("No data found"));
    EXPECT_EQ(parsePlaylist("[playlist]\nFile1=\n", address).message,
              QStringLiteral("No urls found"));
    EXPECT_EQ(parsePlaylist(QByteArray("\0\1binary", 8), address).message,
              QStringLiteral("Nothing found"));
    QByteArray huge = "#EXTM3U\n";
    for (int n = 0; n < 100000; ++n)
        huge += "http://h/" + QByteArray::number(n) + '\n';
    EXPECT_LE(parsePlaylist(huge, address).addresses.size(), 1000);
    EXPECT_TRUE(parsePlaylist(QByteArray(900000, '<'), address).addresses.isEmpty());
}
