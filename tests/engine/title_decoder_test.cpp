#include "engine/title_decoder.h"

#include <QTextCodec>

#include <gtest/gtest.h>

#include <thread>

using BASS::codePageForCountry;
using BASS::decodeIcyBlock;
using BASS::isUtf8;
using BASS::resolveCharacterReferences;

namespace {

struct BlockCase {
    const char* what;
    QByteArray block;
    const char* country;
    const char16_t* track;
    const char16_t* artist;
    const char16_t* title;
    const char16_t* url;
};

QString text(const char16_t* utf16) {
    return QString::fromUtf16(utf16);
}

} // namespace

TEST(TitleDecoder, DecodesBlocks) {
    const BlockCase cases[] = {
        {"plain",
         "StreamTitle='Artist - Song';StreamURL='';",
         "",
         u"Artist - Song",
         u"Artist",
         u"Song",
         u""},
        {"address",
         "StreamTitle='A - B';StreamURL='http://x/y?a=1';",
         "",
         u"A - B",
         u"A",
         u"B",
         u"http://x/y?a=1"},
        {"no quotes lose their last character",
         "StreamTitle=Artist - Song;",
         "",
         u"Artist - Son",
         u"Artist",
         u"Son",
         u""},
        {"no semicolon",
         "StreamTitle='Artist - Song'",
         "",
         u"Artist - Song",
         u"Artist",
         u"Song",
         u""},
        {"quote inside",
         "StreamTitle='Don't - Stop';",
         "",
         u"Don't - Stop",
         u"Don't",
         u"Stop",
         u""},
        {"empty title", "StreamTitle='';StreamURL='';", "", u"", u"", u"", u""},
        {"no title at all", "StreamURL='u';", "", u"", u"", u"", u"u"},
        {"only the beginning", "StreamTitle=", "", u"", u"", u"", u""},
        {"padding", QByteArray("StreamTitle='A - B';\0\0\0\0", 24), "", u"A - B", u"A", u"B", u""},
        {"UTF-8",
         "StreamTitle='Bj\xC3\xB6rk - J\xC3\xB3ga';",
         "Czech",
         u"Björk - Jóga",
         u"Björk",
         u"Jóga",
         u""},
        {"Latin-1 without country",
         "StreamTitle='Bj\xF6rk - J\xF3ga';",
         "",
         u"Björk - Jóga",
         u"Björk",
         u"Jóga",
         u""},
        {"Windows-1252 quotes", "StreamTitle='A - It\x92s';", "", u"A - It’s", u"A", u"It’s", u""},
        {"Czech",
         "StreamTitle='\xC8"
         "ech - \xF8"
         "eka';",
         "Czech Republic",
         u"Čech - řeka",
         u"Čech",
         u"řeka",
         u""},
        {"Russian",
         "StreamTitle='\xCC\xE8\xF0 - \xC4\xEE\xEC';",
         "Russia",
         u"Мир - Дом",
         u"Мир",
         u"Дом",
         u""},
        {"Japanese", "StreamTitle='\x93\xFA\x96{ - A';", "Japan", u"日本 - A", u"日本", u"A", u""},
        {"Arabic countries share the Greek page",
         "StreamTitle='\xC1 - B';",
         "Egypt",
         u"Α - B",
         u"Α",
         u"B",
         u""},
    };
    for (const BlockCase& c : cases) {
        SCOPED_TRACE(c.what);
        const auto song =
            decodeIcyBlock(c.block, codePageForCountry(QString::fromLatin1(c.country)));
        ASSERT_TRUE(song.has_value());
        EXPECT_EQ(song->track, text(c.track));
        EXPECT_EQ(song->artist, text(c.artist));
        EXPECT_EQ(song->title, text(c.title));
        EXPECT_EQ(song->url, text(c.url));
    }
    EXPECT_FALSE(decodeIcyBlock(QByteArray(), {}).has_value());
}

TEST(TitleDecoder, ReplacesTwentyReferencesAndNoMore) {
    QString twentyFive;
    for (int n = 0; n < 25; ++n)
        twentyFive += QStringLiteral("&#233;");
    EXPECT_EQ(resolveCharacterReferences(twentyFive),
              QString(20, QChar(233)) + QStringLiteral("&#233;&#233;&#233;&#233;&#233;"));
    EXPECT_EQ(resolveCharacterReferences(QStringLiteral("a &#38; b")), QStringLiteral("a & b"));
    EXPECT_EQ(resolveCharacterReferences(QStringLiteral("&#99999999; &#x41; &#")),
              QStringLiteral("&#99999999; &#x41; &#"));
}

TEST(TitleDecoder, JudgesUtf8Strictly) {
    const struct {
        QByteArray bytes;
        bool isValid;
    } cases[] = {
        {"ascii", true},
        {"\xC3\xA9", true},
        {"\xE2\x82\xAC", true},
        {"\xF0\x9F\x8E\xB5", true},
        {"\xC3", false},
        {"\xE2\x82", false},
        {"\xE9t\xE9", false},
        {"\x80", false},
        {"\xED\xA0\x80", false}, // a surrogate
        {"\xF8\x88\x80\x80\x80", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isUtf8(c.bytes), c.isValid) << c.bytes.toHex().constData();
}

TEST(TitleDecoder, LeavesTheProcessLocaleAlone) {
    QTextCodec* const before = QTextCodec::codecForLocale();
    std::thread other([] {
        for (int n = 0; n < 200; ++n)
            decodeIcyBlock("StreamTitle='\xCC\xE8\xF0';", "Windows-1251");
    });
    for (int n = 0; n < 200; ++n)
        EXPECT_EQ(decodeIcyBlock("StreamTitle='\xC8"
                                 "ech';",
                                 "Windows-1250")
                      ->track,
                  QStringLiteral("Čech"));
    other.join();
    EXPECT_EQ(QTextCodec::codecForLocale(), before);
}

TEST(TitleDecoder, ReadsCommentLists) {
    const char list[] = "artist=Ana\0TITLE=Um\xC3\xA9\0TITLE=Second\0novalue\0DESCRIPTION=live\0";
    const auto song = BASS::decodeCommentList(list);
    ASSERT_TRUE(song.has_value());
    EXPECT_EQ(song->track, QStringLiteral("Ana - Umé"));
    EXPECT_EQ(song->artist, QStringLiteral("Ana"));
    EXPECT_EQ(song->comment, QStringLiteral("live"));
    const char titleOnly[] = "TITLE=Ben - Tune\0";
    EXPECT_EQ(BASS::decodeCommentList(titleOnly)->artist, QStringLiteral("Ben"));
    EXPECT_FALSE(BASS::decodeCommentList(nullptr).has_value());
}
