#include "recording/audio_tools.h"
#include "recording/recorder_rig.h"
#include "recording/session_log.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

using BASS::RecordMode;
using BASS::SessionLog;
using std::chrono::milliseconds;

QByteArray adts() {
    return encoded(QStringLiteral("-c:a aac -b:a 96k -f adts").split(QLatin1Char(' ')));
}

SessionLog someLog() {
    const QDateTime noon({2024, 2, 29}, {12, 0, 0});
    SessionLog log;
    log.station = QStringLiteral("St\u00E4tion\n\"A\"");
    log.address = QStringLiteral("http://host/live");
    log.started = noon;
    const QString path = QStringLiteral("/music/St/one.mp3");
    log.tracks.append({BASS::songFromTrack(QStringLiteral("Me - First %2")), noon, path, {}});
    log.tracks.append({BASS::songFromTrack(QStringLiteral("Second\nTRACK 99 AUDIO")),
                       noon.addSecs(3700),
                       path,
                       milliseconds(3700040)});
    log.tracks.append({{}, noon.addSecs(4000), QStringLiteral("/music/St/#two.mp3"), {}});
    log.files.append({path, milliseconds(3999600), 1000});
    log.gaps.append({noon.addSecs(10), noon.addSecs(15), 160000, milliseconds(10000), path});
    return log;
}

QByteArray listOf(const char* format, bool hasDates) {
    return BASS::trackList(
        someLog(), {QString::fromLatin1(format), hasDates}, QStringLiteral("/music/St/list"));
}

} // namespace

TEST(SessionLog, CueSheet) {
    EXPECT_EQ(listOf("cue", false).toStdString(),
              "REM DATE \"2024-02-29 12:00:00\"\n"
              "REM COMMENT \"http://host/live\"\n"
              "PERFORMER \"St\xC3\xA4tion 'A'\"\n"
              "TITLE \"St\xC3\xA4tion 'A'\"\n"
              "FILE \"one.mp3\" MP3\n"
              "  REM GAP connection lost 2024-02-29 12:00:10, back 2024-02-29 12:00:15, after "
              "bytes=160000 at 00:00:10\n"
              "  TRACK 01 AUDIO\n"
              "    TITLE \"First %2\"\n"
              "    PERFORMER \"Me\"\n"
              "    INDEX 01 00:00:00\n"
              "  TRACK 02 AUDIO\n"
              "    TITLE \"Second TRACK 99 AUDIO\"\n"
              "    INDEX 01 61:40:03\n"
              "FILE \"./#two.mp3\" MP3\n"
              "  TRACK 03 AUDIO\n"
              "    TITLE \"St\xC3\xA4tion 'A'\"\n"
              "    INDEX 01 00:00:00\n");
    EXPECT_TRUE(listOf("cue", true).contains("    REM DATE \"2024-02-29 13:01:40\"\n"));
}

TEST(SessionLog, Playlist) {
    const std::string expected = "#EXTM3U\n"
                                 "# 2024-02-29 12:00:00 00:00:00 Me - First %2\n"
                                 "# 2024-02-29 13:01:40 01:01:40 Second TRACK 99 AUDIO\n"
                                 "#EXTINF:4000,Me - First %2\n"
                                 "one.mp3\n"
                                 "# 2024-02-29 13:06:40 00:00:00 St\xC3\xA4tion \"A\"\n"
                                 "#EXTINF:-1,St\xC3\xA4tion \"A\"\n"
                                 "./#two.mp3\n";
    EXPECT_EQ(listOf("m3u", true).toStdString(), expected);
    EXPECT_EQ(listOf("no such format", true).toStdString(), expected);
}

TEST(SessionLog, TextAndEmptyLogs) {
    EXPECT_EQ(listOf("TXT", false).toStdString(),
              "Me - First %2\nSecond TRACK 99 AUDIO\nSt\xC3\xA4tion \"A\"\n");
    EXPECT_TRUE(BASS::trackList({}, {}, QStringLiteral("/x")).isEmpty());
    EXPECT_TRUE(BASS::gapLog({}).isEmpty());
    SessionLog log = someLog();
    log.forget(QStringLiteral("/music/St/one.mp3"));
    EXPECT_EQ(log.tracks.size(), 1);
    EXPECT_TRUE(BASS::gapLog(log).isEmpty());
}

TEST(SessionLog, LostConnectionIsToldInListLogAndFile) {
    const QByteArray stream = adts();
    for (const bool isReused : {true, false}) {
        RecorderRig rig;
        rig.options.mode = RecordMode::NoSplit;
        rig.options.isFileReused = isReused;
        rig.options.hasTrackList = true;
        rig.options.trackList.format = QStringLiteral("cue");
        rig.start();
        rig.feed(stream.left(60000), {{20000, QStringLiteral("B \u00E4")}});
        rig.feed(stream);
        rig.stop();
        ASSERT_EQ(rig.files.size(), isReused ? 1U : 2U);
        EXPECT_TRUE(rig.files[0].comment.contains(QStringLiteral("connection lost")));
        const QDir folder(rig.options.folder);
        const QByteArray cue = fileBytes(folder.filePath(QStringLiteral("Station.cue")));
        EXPECT_TRUE(cue.contains("FILE \"Station.aac\"")) << cue.constData();
        EXPECT_TRUE(cue.contains("REM GAP connection lost")) << cue.constData();
        EXPECT_TRUE(cue.contains("TITLE \"B \xC3\xA4\"")) << cue.constData();
        const QByteArray log = fileBytes(folder.filePath(QStringLiteral("Station.log")));
        EXPECT_EQ(log.count("connection lost"), 1) << log.constData();
        EXPECT_TRUE(log.contains("bytes=5")) << log.constData(); // whole frames below 60000
    }
}

TEST(SessionLog, ListOfSplitFilesAndOfAllTitles) {
    RecorderRig rig;
    rig.options.hasTrackList = true;
    rig.options.trackList = {QStringLiteral("m3u"), false};
    rig.options.isTitleListKept = true;
    rig.options.patternSplit = QStringLiteral("%title%\\%track%");
    for (const char* first : {"A", "C"}) {
        rig.start(QString::fromLatin1(first));
        rig.feed(adts(), {{50000, QStringLiteral("B%1").arg(QLatin1String(first))}});
        rig.stop();
    }
    const QDir folder(QDir(rig.options.folder).filePath(QStringLiteral("Station")));
    const QStringList lists = folder.entryList({QStringLiteral("Station *.m3u")});
    ASSERT_EQ(lists.size(), 2) << "no session writes over another one's list";
    const QByteArray list = fileBytes(folder.filePath(lists[0]));
    EXPECT_TRUE(list.contains(",A\nA.aac\n")) << list.constData();
    EXPECT_TRUE(list.contains(",BA\nBA.aac\n")) << list.constData();
    const QByteArray titles =
        fileBytes(QDir(rig.options.folder).filePath(QStringLiteral("tracks.txt")));
    EXPECT_EQ(titles.count('\n'), 4) << titles.constData();
    EXPECT_TRUE(titles.contains("\tStation\tBC\n")) << titles.constData();
}
