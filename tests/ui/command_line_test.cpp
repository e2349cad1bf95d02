#include "ui/console_reporter.h"
#include "ui/controllers/end_action_timer.h"
#include "ui/controllers/record_controller.h"
#include "ui/message.h"
#include "ui/window_fixture.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

#include <cstdio>

using namespace std::chrono_literals;

namespace {

QStringList line(std::initializer_list<const char*> options) {
    QStringList arguments{QStringLiteral("wavelark")};
    for (const char* option : options) {
        arguments.append(QString::fromUtf8(option));
    }
    return arguments;
}

} // namespace

TEST_F(WindowTest, CommandLineRecordsAStationForATimeAndExits) {
    open();
    QSignalSpy quit(window.get(), &AllSkylarkRadio::sig_quitRequested);
    EXPECT_TRUE(window->processArgs(line({"/url=http://one.example/",
                                          "/name=\"Morning Show\"",
                                          "/action=Record (Split)",
                                          "/duration=90",
                                          "/end_action=1"}),
                                    false));
    EXPECT_EQ(player.calls.first(), QStringLiteral("play http://one.example/"));
    EXPECT_TRUE(player.isRecording()); // before the first byte
    EXPECT_EQ(player.options.mode, BASS::RecordMode::Split);
    EXPECT_EQ(player.options.station.station, QStringLiteral("Morning Show"));
    player.becomePlaying();

    auto* timer = window->findChild<EndActionTimer*>();
    clock.passed += 89s;
    timer->check();
    EXPECT_TRUE(player.isRecording());
    EXPECT_EQ(timer->remaining(), 1s);
    player.isSlowToFinish = true;
    clock.passed += 1s;
    timer->check();
    EXPECT_EQ(player.playState(), PlayState::Stopped);
    EXPECT_EQ(quit.count(), 0);
    player.finishRecording();
    EXPECT_EQ(quit.count(), 1);
}

TEST_F(WindowTest, CommandLineCases) {
    const struct {
        const char* what;
        QStringList arguments;
        bool isStarted;
        QStringList calls;
        bool isMuted;
    } cases[] = {
        {"play",
         line({"/url=http://one.example/"}),
         true,
         texts({"play http://one.example/"}),
         false},
        {"without slash",
         line({"url=http://one.example/"}),
         true,
         texts({"play http://one.example/"}),
         false},
        {"whole",
         line({"/url=http://one.example/", "/action=Record (No Split)"}),
         true,
         texts({"play http://one.example/", "record"}),
         false},
        {"muted",
         line({"/url=http://one.example/", "/action=Play MuteVolume"}),
         true,
         texts({"play http://one.example/"}),
         true},
        {"mute at the start does not count", line({"/action=MuteVolume"}), false, {}, false},
        {"known id", line({"/station_id=77"}), true, texts({"play http://known.example/"}), false},
        {"unknown id", line({"/station_id=78"}), false, {}, false},
        {"unknown id with address",
         line({"/station_id=78", "/url=http://one.example/"}),
         true,
         texts({"play http://one.example/"}),
         false},
        {"record with nothing to record", line({"/action=Record"}), false, {}, false},
        {"recording device",
         line({"/url=RecordingDevice", "/action=Record (No Split)"}),
         true,
         texts({"play RecordingDevice", "record"}),
         false},
        {"no address", line({"/url="}), false, {}, false},
    };
    BASS::StationRecord known = BASS::stationFromAddress(QStringLiteral("http://known.example/"));
    known.stationId = QStringLiteral("77");
    played.add(known);
    open();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        player.stop();
        player.calls.clear();
        player.isMuted = false;
        EXPECT_EQ(window->processArgs(c.arguments, true), c.isStarted);
        EXPECT_EQ(player.calls, c.calls);
        EXPECT_EQ(player.isMuted, c.isMuted);
    }
}

TEST_F(WindowTest, AScheduleNamesTheRecordingAndNotTheStation) {
    played.add(BASS::stationFromAddress(QStringLiteral("http://one.example/"),
                                        QStringLiteral("Radio One")));
    open();
    window->processArgs(line({"/url=http://one.example/",
                              "/id=5",
                              "/name=\"Every Morning\"",
                              "/action=\"Record (Split)\""}),
                        false);
    EXPECT_EQ(player.options.station.station, QStringLiteral("Radio One"));
    EXPECT_EQ(player.options.station.schedule, QStringLiteral("Every Morning"));
    player.becomePlaying();
    EXPECT_EQ(played.stations().first().name, QStringLiteral("Radio One"));
}

TEST_F(WindowTest, AnotherAddressStopsWhatPlaysAndRecords) {
    open();
    window->processArgs(line({"/url=http://one.example/", "/action=Record (Split)"}), false);
    player.becomePlaying();
    player.isSlowToFinish = true;
    player.calls.clear();
    window->processArgs(line({"/url=http://two.example/", "/action=Record (No Split)"}), true);
    EXPECT_EQ(player.calls, texts({"stop", "play http://two.example/"}));
    player.finishRecording(); // only now can the next one begin
    EXPECT_EQ(player.calls.last(), QStringLiteral("record"));
    EXPECT_EQ(player.options.mode, BASS::RecordMode::NoSplit);
}

TEST_F(WindowTest, AScheduleThatRunsIsNotStartedTwice) {
    settings.isAdvanced = true;
    open();
    const QStringList start = line({"/url=http://one.example/", "/id=4711"});
    EXPECT_TRUE(window->processArgs(start, false));
    player.becomePlaying();
    EXPECT_TRUE(window->processArgs(start, true));
    EXPECT_EQ(player.calls.size(), 1);
    EXPECT_EQ(text("messageBar"), QStringLiteral("Schedule is already running now"));
    settings.isAdvanced = false;
    EXPECT_TRUE(window->processArgs(start, true));
    EXPECT_EQ(player.calls.size(), 3);
}

TEST_F(WindowTest, EndActionsReachThePowerOfTheComputer) {
    open();
    const struct {
        const char* code; ///< numbering of schedules
        QList<int> power; ///< numbering of the sleep timer
    } cases[] = {{"/end_action=0", {}},
                 {"/end_action=2", {2}},
                 {"/end_action=3", {3}},
                 {"/end_action=4", {1}},
                 {"/end_action=9", {}}};
    auto* timer = window->findChild<EndActionTimer*>();
    powerAnswer = QStringLiteral("The computer cannot do that");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        powerActions.clear();
        window->processArgs(line({"/url=http://one.example/", "/duration=10", c.code}), false);
        clock.passed += 11s;
        timer->check();
        EXPECT_EQ(powerActions, c.power);
        EXPECT_EQ(player.playState(), PlayState::Stopped);
    }
    EXPECT_EQ(text("messageBar"), QStringLiteral("Error: The computer cannot do that"));
}

TEST(EndActionTimer, ImpossibleDurationsStartNothing) {
    FakeClock clock;
    EndActionTimer timer(clock);
    for (const int seconds : {0, -1, std::numeric_limits<int>::min()}) {
        timer.start(std::chrono::seconds(seconds), EndAction::Exit);
        EXPECT_FALSE(timer.isRunning());
    }
    timer.start(std::chrono::seconds(std::numeric_limits<int>::max()), EndAction::Exit);
    EXPECT_GT(timer.remaining(), std::chrono::hours(24 * 365 * 60));
}

TEST(Console, OneLineForEveryFinishedFile) {
    DemoPlayer player;
    QTemporaryDir folder;
    const QByteArray outPath = folder.filePath(QStringLiteral("out")).toLocal8Bit();
    const QByteArray errPath = folder.filePath(QStringLiteral("err")).toLocal8Bit();
    std::FILE* out = std::fopen(outPath.constData(), "wb");
    std::FILE* err = std::fopen(errPath.constData(), "wb");
    ConsoleReporter console(player, out, err);
    BASS::RecordedFile file;
    file.path = QStringLiteral("/rec/Äpfel \x1b[31m\n.mp3");
    emit player.sig_fileFinished(file);
    emit player.sig_logLine(QStringLiteral("Connected"), false);
    console.report({Message::Kind::Error, QStringLiteral("No"), {}, {}});
    const auto written = [](const QByteArray& path) {
        QFile read(QString::fromLocal8Bit(path));
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
    };
    const QString shown = QDir::toNativeSeparators(QStringLiteral("/rec/Äpfel  [31m .mp3\n"));
    EXPECT_EQ(written(outPath), "Recorded: " + shown.toUtf8());
    EXPECT_EQ(written(errPath), QByteArray("Connected\nError: No\n"));
    std::fclose(out);
    std::fclose(err);
}
