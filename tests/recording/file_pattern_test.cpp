#include "recording/file_pattern.h"

#include <QDir>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

using namespace BASS;

FileNameContext context() {
    FileNameContext c;
    c.station = {QStringLiteral("Radio"),
                 QStringLiteral("Norway"),
                 QStringLiteral("Viken"),
                 QStringLiteral(" Oslo "),
                 QStringLiteral("Night")};
    c.song.track = QStringLiteral("Ann - Song");
    c.song.artist = QStringLiteral("Ann");
    c.song.title = QStringLiteral("Song");
    c.song.comment = QStringLiteral("live");
    c.now = QDateTime(QDate(2026, 3, 4), QTime(15, 6, 7));
    c.dateFormat = QStringLiteral("yyyy.MM.dd");
    c.timeFormat = QStringLiteral("hh.mm.ss");
    return c;
}

std::string expanded(const char* pattern, const FileNameContext& c) {
    return expandPattern(QString::fromUtf8(pattern), c).toStdString();
}

std::string pathOf(const QString& pattern, const FileNameContext& c) {
    return relativeRecordingPath(pattern, c, QStringLiteral("mp3")).toStdString();
}

} // namespace

TEST(FilePattern, ReplacesEveryPlaceholder) {
    const FileNameContext c = context();
    EXPECT_EQ(expanded("%title%|%country%|%state%|%city%|%schedule%", c),
              "Radio|Norway|Viken|Oslo|Night");
    EXPECT_EQ(expanded("%date%_%time%", c), "2026.03.04_15.06.07");
    EXPECT_EQ(expanded("%track_or_title%,%title_or_track%,%track%", c),
              "Ann - Song,Ann - Song,Ann - Song");
    EXPECT_EQ(expanded("%artist%+%song_title%+%track_title%+%comment%", c), "Ann+Song+Song+live");
    EXPECT_EQ(expanded("%title%\\%title%%title% %unknown% 100%", c),
              "Radio\\RadioRadio %unknown% 100%");
}

TEST(FilePattern, EmptyValuesTakeTheirBlankWithThem) {
    FileNameContext c = context();
    c.song.artist.clear();
    EXPECT_EQ(expanded("%title% %artist% %track%", c), "Radio Ann - Song");
    EXPECT_EQ(expanded("%track%%artist%", c), "Ann - Song");
    EXPECT_EQ(expanded("%title% %comment%", c), "Radio ") << "a comment needs an artist";
    c.song = {};
    EXPECT_EQ(expanded("%track_or_title%-%title_or_track%-%track%", c), "Radio-Radio-");
    c.dateFormat.clear();
    c.timeFormat.clear();
    EXPECT_EQ(expanded("%date%", c), c.now.toString(QStringLiteral("dd.MMM.yyyy")).toStdString());
    EXPECT_EQ(expanded("%time%", c), c.now.toString(QStringLiteral("h.mm.ss AP")).toStdString());
}

TEST(FilePattern, CleaningDropsTheEndAndReplacesTheRest) {
    const auto cleaned = [](const char* text) {
        return cleanName(QString::fromUtf8(text), QStringLiteral("_")).toStdString();
    };
    EXPECT_EQ(cleaned("Who?"), "Who");
    EXPECT_EQ(cleaned("Who? ?*"), "Who_");
    EXPECT_EQ(cleaned("a<b>c:d\"e/f\\g|h?i*j\u201Ck\u201Dl\tm\nn"), "a_b_c_d_e_f_g_h_i_j_k_l_m_n");
    EXPECT_EQ(cleaned("blank  "), "blank");
    EXPECT_EQ(cleanName(QStringLiteral("a/b"), QString()).toStdString(), "ab");
}

TEST(FilePattern, DefaultTitles) {
    FileNameContext c = context();
    const auto title = [&c] { return defaultRecordingTitle(c).toStdString(); };
    const std::string stamp =
        c.now.toString(QStringLiteral("dd.MMM.yyyy")).toStdString() + "_15.06";
    EXPECT_EQ(title(), "Radio");
    c.isSplit = true;
    EXPECT_EQ(title(), "Radio - Ann - Song");
    c.song.track = QStringLiteral("short");
    EXPECT_EQ(title(), "Radio - " + stamp);
    c.station.station.clear();
    EXPECT_EQ(title(), "Unknown Station - " + stamp);
    c.station.station = QString(80, QLatin1Char('s'));
    c.song.track =
        QString(63, QLatin1Char('t')) + QStringLiteral("    ") + QString(80, QLatin1Char('t'));
    const QString name = defaultRecordingTitle(c);
    EXPECT_EQ(name.toStdString(), std::string(50, 's') + " - " + std::string(63, 't'))
        << "cut to 120, then cleaned";
}

TEST(FilePattern, TakenNamesGetAStampBeforeTheFirstDot) {
    const QDateTime now = context().now;
    const QString stamp = cleanName(now.toString(Qt::TextDate), QStringLiteral("_"));
    const auto stamped = [&](const char* name, int attempt) {
        return stampedFileName(QString::fromUtf8(name), now, QStringLiteral("_"), attempt);
    };
    EXPECT_EQ(stamped("a.b.mp3", 1), QStringLiteral("a_%1.b.mp3").arg(stamp));
    EXPECT_EQ(stamped("a.mp3", 2), QStringLiteral("a_%1_2.mp3").arg(stamp));
    EXPECT_EQ(stamped("a", 1), QStringLiteral("a_%1").arg(stamp));
    EXPECT_FALSE(stamped("a.mp3", 1).contains(QLatin1Char(':')));
}

TEST(SafeName, WhatNoSystemCanStoreIsMadeStorable) {
    struct Case {
        QString text;
        const char* name;
    };
    const std::vector<Case> cases{
        {QStringLiteral("CON"), "_CON"},
        {QStringLiteral("con.mp3"), "_con.mp3"},
        {QStringLiteral("Com1"), "_Com1"},
        {QStringLiteral("LPT\u00B9 .x"), "_LPT\u00B9 .x"},
        {QStringLiteral("nul "), "_nul"},
        {QStringLiteral("CONCERT"), "CONCERT"},
        {QStringLiteral("COM"), "COM"},
        {QStringLiteral(".."), ""},
        {QStringLiteral("."), ""},
        {QStringLiteral(" . . "), ""},
        {QStringLiteral("..hidden"), "hidden"},
        {QStringLiteral("dots..."), "dots"},
        {QStringLiteral("../../etc/passwd"), "_.._etc_passwd"},
        {QStringLiteral("C:\\Windows"), "C__Windows"},
        {QStringLiteral("gpj.\u202Etxt"), "gpj.txt"},
        {QStringLiteral("a\u200Bb\uFEFFc"), "abc"},
        {QStringLiteral("e\u0301"), "\u00E9"},
        {QStringLiteral("\U0001F3B5 music"), "\U0001F3B5 music"},
        {QString(QChar(0xD83C)) + QStringLiteral("half"), "_half"},
        {QStringLiteral("bell\a\x1b[2J"), "bell[2J"},
        {QStringLiteral("zero") + QChar(0) + QStringLiteral(".exe"), "zero.exe"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(safeComponent(c.text, QStringLiteral("_")).toStdString(), c.name)
            << c.text.toStdString();
    EXPECT_EQ(safeComponent(QStringLiteral("a/b"), QStringLiteral("/")).toStdString(), "a_b")
        << "a replacement that is unsafe itself";
}

TEST(SafeName, LongNamesKeepRoomForStampAndExtension) {
    for (const QString& unit : {QStringLiteral("x"),
                                QStringLiteral("\u00E9"),
                                QStringLiteral("\u20AC"),
                                QStringLiteral("\U0001F3B5")}) {
        FileNameContext c = context();
        c.song.track = unit.repeated(4080);
        const QString path =
            relativeRecordingPath(QStringLiteral("%track%"), c, QStringLiteral("flac"));
        EXPECT_TRUE(path.endsWith(QStringLiteral(".flac")));
        EXPECT_FALSE(path.contains(QChar::ReplacementCharacter));
        EXPECT_EQ(QString::fromUtf8(path.toUtf8()), path);
        EXPECT_GT(path.toUtf8().size(), 150);
        const QString stamped = stampedFileName(path, c.now, QStringLiteral("_"), 12);
        EXPECT_LE(stamped.toUtf8().size(), 255);
    }
}

TEST(RecordingPath, OnlyThePatternMakesFolders) {
    FileNameContext c = context();
    EXPECT_EQ(pathOf(QStringLiteral("%title%\\%city%\\%track%"), c), "Radio/Oslo/Ann - Song.mp3");
    c.station.station = QStringLiteral("..\\..\\up/and/away");
    c.song.track = QStringLiteral("/etc/passwd");
    EXPECT_EQ(pathOf(QStringLiteral("%title%\\%track%"), c), "_.._up_and_away/_etc_passwd.mp3");
    EXPECT_EQ(pathOf(QStringLiteral("..\\..\\%track%"), c), "_etc_passwd.mp3");
    EXPECT_EQ(pathOf(QStringLiteral("\\\\server\\%artist%"), c), "server/Ann.mp3");
    EXPECT_EQ(pathOf(QStringLiteral("/tmp/%artist%"), c), "_tmp_Ann.mp3");
    c.song = {};
    c.station.station = QStringLiteral("Radio");
    EXPECT_EQ(pathOf(QStringLiteral("%title%\\%track%"), c),
              "Radio/" + defaultRecordingTitle(c).toStdString() + ".mp3");
    EXPECT_EQ(pathOf(QString(), c), defaultRecordingTitle(c).toStdString() + ".mp3");
}

TEST(RecordingPath, NothingLeavesTheFolder) {
    const QStringList hostile{QStringLiteral(".."),
                              QStringLiteral("../../x"),
                              QStringLiteral("..\\..\\x"),
                              QStringLiteral("/"),
                              QStringLiteral("\\"),
                              QStringLiteral("."),
                              QStringLiteral("CON"),
                              QStringLiteral("a\n../b"),
                              QStringLiteral("\u2024\u2024/"),
                              QString(3, QChar(0)) + QStringLiteral("../"),
                              QStringLiteral("%title%\\..\\%artist%"),
                              QStringLiteral("../").repeated(1360)};
    for (const QString& text : hostile) {
        FileNameContext c = context();
        c.station.station = c.song.track = c.song.artist = c.song.title = text;
        for (const QString& pattern : {QStringLiteral("%title%\\%track%"),
                                       QStringLiteral("%artist%"),
                                       QStringLiteral("..\\%song_title%"),
                                       text}) {
            const QString path = relativeRecordingPath(pattern, c, QStringLiteral("mp3"));
            EXPECT_EQ(QDir::cleanPath(path), path) << text.toStdString();
            EXPECT_FALSE(path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1String("..")));
            EXPECT_FALSE(path.contains(QChar(0)));
        }
    }
}
