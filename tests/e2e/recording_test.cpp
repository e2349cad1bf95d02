#include "e2e/icecast.h"
#include "e2e/program_run.h"
#include "support/media_tools.h"
#include "support/test_station.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace std::chrono_literals;

namespace {

const QStringList kMp3{QStringLiteral("-c:a"),
                       QStringLiteral("libmp3lame"),
                       QStringLiteral("-b:a"),
                       QStringLiteral("128k")};
const QStringList kAac{
    QStringLiteral("-c:a"), QStringLiteral("aac"), QStringLiteral("-b:a"), QStringLiteral("96k")};

QVector<StationTrack>
tones(const QStringList& codec, const QString& container, double seconds, int count) {
    QVector<StationTrack> tracks;
    for (int n = 1; n <= count; ++n)
        tracks.append(
            {media::encodeTone({250 * n, seconds, codec, container, {}}),
             QByteArray("Artist ") + QByteArray::number(n) + " - Song " + QByteArray::number(n)});
    return tracks;
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList arguments(const QString& url, const char* action, int seconds) {
    return {QStringLiteral("/url=") + url,
            QStringLiteral("/name=Tone Station"),
            QStringLiteral("/action=") + QString::fromLatin1(action),
            QStringLiteral("/duration=%1").arg(seconds),
            QStringLiteral("/end_action=1")};
}

/// The files of a session as the bytes of the stream that they hold.
QByteArray laidEndToEnd(const QStringList& paths, bool isMp3) {
    QByteArray all;
    for (const QString& path : paths)
        all += isMp3 ? media::mp3StreamBytes(readAll(path), path != paths.first())
                     : media::withoutId3(readAll(path));
    return all;
}

void expectClean(const QStringList& paths) {
    for (const QString& path : paths)
        EXPECT_EQ(media::decodeErrors(path), QString()) << path.toStdString();
}

/// Everything but at most a part of a frame at the end.
void expectWhole(const QByteArray& recorded, const QByteArray& served, int mostMissing) {
    EXPECT_TRUE(served.startsWith(recorded));
    EXPECT_GE(recorded.size(), served.size() - mostMissing);
}

QByteArray allServed(const TestStation& station) {
    QByteArray all;
    for (const ServedConnection& connection : station.served())
        all += connection.audio;
    return all;
}

constexpr int kMostUnfinishedFrame = 1500;

} // namespace

/// The stream ends by itself, so that what was served is known to the byte.
TEST(Recording, SplitFilesHoldEveryByteThatWasServed) {
    const struct {
        const char* what;
        QStringList codec;
        QString container;
        const char* type;
        int bytesPerSecond;
        const char* suffix;
    } cases[] = {
        {"MP3", kMp3, QStringLiteral("mp3"), "audio/mpeg", 16000, "mp3"},
        {"AAC", kAac, QStringLiteral("adts"), "audio/aac", 12000, "aac"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        TestStation station;
        StationScript script;
        script.tracks = tones(c.codec, c.container, 6, 3);
        ASSERT_FALSE(script.tracks.last().audio.isEmpty());
        script.isLooped = false;
        script.metaint = 1024;
        script.speed = 4;
        script.bytesPerSecond = c.bytesPerSecond;
        script.contentType = c.type;
        station.setScript(script);
        ASSERT_TRUE(station.listen());
        ProgramRun program;
        // what was served is looked for byte by byte
        program.setSetting(QStringLiteral("UseM4AForAAC"), QStringLiteral("false"));
        program.start(arguments(station.url(), "Record (Split)", 8));
        // one listener is served; the ones after it (the program reconnects) are refused
        ASSERT_TRUE(program.waitForOutput(QStringLiteral("Connection succeeded"), 60s))
            << program.output().toStdString();
        station.stopListening();
        ASSERT_TRUE(program.waitForEnd(60s)) << program.output().toStdString();
        EXPECT_EQ(program.exitCode(), 0);

        const QStringList files = program.recordings();
        ASSERT_EQ(files.size(), 3) << files.join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(QFileInfo(files.at(1)).fileName(),
                  QStringLiteral("Artist 2 - Song 2.") + QLatin1String(c.suffix));
        EXPECT_EQ(QFileInfo(files.at(1)).dir().dirName(), QStringLiteral("Tone Station"));
        expectClean(files);
        const bool isMp3 = QByteArray(c.suffix) == "mp3";
        expectWhole(laidEndToEnd(files, isMp3), station.served().first().audio, 0);
        // a cut lies within a frame of the title's place in the bytes
        const auto titles = station.served().first().titles;
        ASSERT_EQ(titles.size(), 3);
        const qint64 firstFiles = laidEndToEnd(files.mid(0, 2), isMp3).size();
        EXPECT_GE(firstFiles, titles.at(2).first);
        EXPECT_LT(firstFiles - titles.at(2).first, kMostUnfinishedFrame);
    }
}

TEST(Recording, GoesOnInTheSameFileOverLostConnections) {
    TestStation station;
    StationScript script;
    script.tracks = tones(kMp3, QStringLiteral("mp3"), 60, 1);
    script.continues = true;
    script.metaint = 1024;
    script.speed = 2;
    script.burst = 8192;
    script.resetAt = 50000 + 123; // in mid-frame
    station.setScript(script);
    ASSERT_TRUE(station.listen());
    ProgramRun program;
    program.start(arguments(station.url(), "Record (Split)", 13));
    ASSERT_TRUE(program.waitForOutput(QStringLiteral("connection to the station was lost"), 20s));
    station.stopListening();
    QThread::msleep(1500); // the server is away for a while: refused connections
    script.resetAt = -1;
    script.closeAt = 60000 + 77;
    station.setScript(script);
    ASSERT_TRUE(station.listen());
    ASSERT_TRUE(program.waitForEnd(40s)) << program.output().toStdString();

    const QStringList files = program.recordings();
    ASSERT_EQ(files.size(), 1) << files.join(QLatin1Char('\n')).toStdString();
    EXPECT_GE(station.served().size(), 3);
    expectClean(files);
    // each connection lost at most the frame that was torn and the one that it joined in; the last
    // one was left while something, a second of it at most, was still on its way
    const qint64 mostTorn = 2 * kMostUnfinishedFrame * station.served().size();
    const qint64 mostOnItsWay = std::min<qint64>(station.served().last().audio.size(), 32000);
    const qint64 complete = allServed(station).size() - mostOnItsWay;
    EXPECT_GE(laidEndToEnd(files, true).size(), complete - mostTorn);
}

TEST(Recording, StreamsOfARealServer) {
    Icecast icecast;
    ASSERT_TRUE(icecast.start()) << icecast.error.toStdString();
    const QStringList sine{QStringLiteral("-f"),
                           QStringLiteral("lavfi"),
                           QStringLiteral("-i"),
                           QStringLiteral("sine=frequency=500:sample_rate=48000")};
    const struct {
        const char* mount;
        QStringList codec;
        const char* type;
        const char* suffix;
        const char* codecName;
    } cases[] = {
        {"mp3",
         kMp3 + QStringList{QStringLiteral("-f"), QStringLiteral("mp3")},
         "audio/mpeg",
         "mp3",
         "mp3"},
        {"aac",
         kAac + QStringList{QStringLiteral("-f"), QStringLiteral("adts")},
         "audio/aac",
         "m4a",
         "aac"},
        {"vorbis",
         {QStringLiteral("-c:a"),
          QStringLiteral("libvorbis"),
          QStringLiteral("-q:a"),
          QStringLiteral("3"),
          QStringLiteral("-metadata"),
          QStringLiteral("title=Vorbis Tone"),
          QStringLiteral("-f"),
          QStringLiteral("ogg")},
         "application/ogg",
         "ogg",
         "vorbis"},
        {"opus",
         {QStringLiteral("-c:a"),
          QStringLiteral("libopus"),
          QStringLiteral("-b:a"),
          QStringLiteral("64k"),
          QStringLiteral("-metadata"),
          QStringLiteral("title=Opus Tone"),
          QStringLiteral("-f"),
          QStringLiteral("ogg")},
         "application/ogg",
         "ogg",
         "opus"},
        {"oggflac",
         {QStringLiteral("-c:a"),
          QStringLiteral("flac"),
          QStringLiteral("-metadata"),
          QStringLiteral("title=Flac Tone"),
          QStringLiteral("-f"),
          QStringLiteral("ogg")},
         "application/ogg",
         "oga",
         "flac"},
    };
    for (const auto& c : cases)
        ASSERT_TRUE(
            icecast.feed(QString::fromLatin1(c.mount), sine, c.codec, QString::fromLatin1(c.type)))
            << c.mount << ' ' << icecast.error.toStdString();
    std::vector<std::unique_ptr<ProgramRun>> programs;
    for (const auto& c : cases) {
        programs.push_back(std::make_unique<ProgramRun>());
        programs.back()->start(
            arguments(icecast.url(QString::fromLatin1(c.mount)), "Record (Split)", 10));
    }
    for (const char* mount : {"mp3", "aac"})
        ASSERT_TRUE(icecast.setTitle(QString::fromLatin1(mount),
                                     QStringLiteral("Ärtist / Ä - First: \"Söng\"?")));
    ASSERT_TRUE(programs[0]->waitForOutput(QStringLiteral("Connection succeeded"), 30s))
        << programs[0]->output().toStdString();
    ASSERT_TRUE(programs[1]->waitForOutput(QStringLiteral("Connection succeeded"), 30s))
        << programs[1]->output().toStdString();
    QThread::msleep(3000);
    for (const char* mount : {"mp3", "aac"})
        ASSERT_TRUE(icecast.setTitle(QString::fromLatin1(mount), QStringLiteral("Second - Song")));
    int n = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mount);
        ProgramRun& program = *programs[static_cast<std::size_t>(n++)];
        ASSERT_TRUE(program.waitForEnd(60s)) << program.output().toStdString();
        EXPECT_EQ(program.exitCode(), 0);
        const QStringList files = program.recordings();
        const bool hasIcyTitles = n <= 2;
        ASSERT_EQ(files.size(), hasIcyTitles ? 2 : 1)
            << files.join(QLatin1Char('\n')).toStdString();
        expectClean(files);
        double seconds = 0;
        for (const QString& file : files) {
            EXPECT_EQ(QFileInfo(file).suffix(), QLatin1String(c.suffix));
            EXPECT_EQ(media::probe(file, QStringLiteral("stream=codec_name")),
                      QLatin1String(c.codecName));
            seconds += media::decodedSeconds(file);
        }
        EXPECT_GT(seconds, 8.0);
        const QString lastName = QFileInfo(files.last()).completeBaseName();
        if (hasIcyTitles)
            EXPECT_EQ(lastName, QStringLiteral("Second - Song"));
        else
            EXPECT_TRUE(lastName.endsWith(QStringLiteral(" Tone"))) << lastName.toStdString();
    }
}

TEST(Recording, AKilledProgramLeavesAPlayableFile) {
    TestStation station;
    StationScript script;
    script.tracks = tones(kMp3, QStringLiteral("mp3"), 60, 1);
    script.metaint = 1024;
    station.setScript(script);
    ASSERT_TRUE(station.listen());
    ProgramRun program;
    program.start(arguments(station.url(), "Record (No Split)", 60));
    ASSERT_TRUE(program.waitForOutput(QStringLiteral("Connection succeeded"), 20s));
    QThread::msleep(4000);
    const qint64 served = station.served().first().audio.size();
    program.kill();
    const QStringList files = program.recordings();
    ASSERT_EQ(files.size(), 1);
    expectClean(files);
    // all but the last second
    EXPECT_GE(laidEndToEnd(files, true).size(),
              served - script.bytesPerSecond - kMostUnfinishedFrame);
}
