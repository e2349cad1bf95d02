#include "e2e/program_run.h"
#include "support/media_tools.h"
#include "support/test_station.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace std::chrono_literals;

namespace {

StationTrack tone(const QByteArray& title) {
    static const QByteArray audio = media::encodeTone({440,
                                                       20,
                                                       {QStringLiteral("-c:a"),
                                                        QStringLiteral("libmp3lame"),
                                                        QStringLiteral("-b:a"),
                                                        QStringLiteral("64k")},
                                                       QStringLiteral("mp3"),
                                                       {}});
    return {audio, title};
}

QStringList recordFor(const QString& url, int seconds) {
    return {QStringLiteral("/url=") + url,
            QStringLiteral("/name=Hostile"),
            QStringLiteral("/action=Record (Split)"),
            QStringLiteral("/duration=%1").arg(seconds),
            QStringLiteral("/end_action=1")};
}

} // namespace

/// Whatever a station does, the program says so in one line, ends in order and keeps what is good.
TEST(Hostile, StationsThatAreNone) {
    const struct {
        const char* what;
        StationScript script;
        bool isListening;
        const char* said;
    } cases[] = {
        {"refused", {}, false, "Can't open the file"},
        {"HTML",
         [] {
             StationScript s;
             s.rawAnswer = "HTTP/1.1 200 OK\r\nContent-Type: "
                           "audio/mpeg\r\n\r\n<html><head><title>Sorry</title></head>" +
                           QByteArray(9000, ' ') + "</html>";
             return s;
         }(),
         true,
         "Unsupported file format"},
        {"not found",
         [] {
             StationScript s;
             s.rawAnswer = "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\nnope";
             return s;
         }(),
         true,
         "Can't open the file"},
        {"nothing but noise",
         [] {
             StationScript s;
             QByteArray noise;
             quint32 state = 1;
             for (int n = 0; n < 200000; ++n) {
                 state = state * 1664525U + 1013904223U;
                 noise += static_cast<char>(state >> 24);
             }
             s.rawAnswer = "HTTP/1.0 200 OK\r\nContent-Type: audio/mpeg\r\n\r\n" + noise;
             return s;
         }(),
         true,
         "Unsupported file format"},
        {"silent",
         [] {
             StationScript s;
             s.isSilent = true;
             return s;
         }(),
         true,
         "Connection timed out"},
    };
    // all at once: each takes its time
    struct Run {
        TestStation station;
        ProgramRun program;
    };
    std::vector<std::unique_ptr<Run>> runs;
    for (const auto& c : cases) {
        auto& run = *runs.emplace_back(std::make_unique<Run>());
        run.station.setScript(c.script);
        ASSERT_TRUE(run.station.listen());
        if (!c.isListening)
            run.station.stopListening();
        run.program.start(recordFor(run.station.url(), 7));
    }
    auto run = runs.begin();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ProgramRun& program = (*run++)->program;
        ASSERT_TRUE(program.waitForEnd(60s));
        EXPECT_FALSE(program.isCrashed()) << program.output().toStdString();
        EXPECT_TRUE(program.output().contains(QLatin1String(c.said)))
            << program.output().toStdString();
        EXPECT_TRUE(program.recordings().isEmpty())
            << program.recordings().join(QLatin1Char('\n')).toStdString();
    }
}

TEST(Hostile, TitlesNeverLeaveTheRecordingFolder) {
    TestStation station;
    StationScript script;
    for (const QByteArray& title : {QByteArray("../../../../etc/passwd"),
                                    QByteArray("CON"),
                                    QByteArray(4000, 'x'),
                                    QByteArray("a\0b", 3),
                                    QByteArray("<b>|?*\\..\\x")})
        script.tracks.append({tone({}).audio.left(24000), title});
    script.metaint = 512;
    script.bytesPerSecond = 8000;
    script.speed = 6;
    station.setScript(script);
    ASSERT_TRUE(station.listen());
    ProgramRun program;
    program.start(recordFor(station.url(), 5));
    ASSERT_TRUE(program.waitForEnd(30s));
    EXPECT_FALSE(program.isCrashed());
    const QStringList files = program.recordings();
    EXPECT_GE(files.size(), 5);
    for (const QString& file : files) {
        const QFileInfo info(file);
        EXPECT_EQ(info.path(), program.recordingFolder() + QStringLiteral("/Hostile"))
            << file.toStdString();
        EXPECT_LE(info.fileName().toUtf8().size(), 255);
        EXPECT_EQ(media::decodeErrors(file), QString()) << file.toStdString();
    }
}

TEST(Hostile, AReadOnlyRecordingFolderIsSaidAndPlayingGoesOn) {
    TestStation station;
    StationScript script;
    script.tracks = {tone("A - B")};
    script.bytesPerSecond = 8000;
    station.setScript(script);
    ASSERT_TRUE(station.listen());
    ProgramRun program;
    // a file stands where the folder should be: no right of any user makes it writable
    QFile obstacle(program.recordingFolder());
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    program.start(recordFor(station.url(), 5));
    ASSERT_TRUE(program.waitForEnd(30s));
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_TRUE(
        program.output().contains(QStringLiteral("Recording failed: Unable to create output file")))
        << program.output().toStdString();
}

TEST(Hostile, RedirectsAndOldServersPlay) {
    TestStation target;
    StationScript script;
    script.tracks = {tone("Old - Server")};
    script.bytesPerSecond = 8000;
    script.isOldIcy = true;
    script.chunk = 7;
    target.setScript(script);
    ASSERT_TRUE(target.listen());
    TestStation door;
    StationScript redirect;
    redirect.rawAnswer = "HTTP/1.1 302 Found\r\nLocation: " + target.url().toLatin1() +
                         "\r\nContent-Length: 0\r\n\r\n";
    door.setScript(redirect);
    ASSERT_TRUE(door.listen());
    ProgramRun program;
    program.start(recordFor(door.url(), 4));
    ASSERT_TRUE(program.waitForEnd(30s));
    const QStringList files = program.recordings();
    ASSERT_EQ(files.size(), 1) << program.output().toStdString();
    EXPECT_EQ(QFileInfo(files.first()).fileName(), QStringLiteral("Old - Server.mp3"));
    EXPECT_EQ(media::decodeErrors(files.first()), QString());
}
