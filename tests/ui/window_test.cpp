#include "platform/windows_theme_watcher.h"
#include "ui/commands.h"
#include "ui/controllers/play_controller.h"
#include "ui/controllers/record_controller.h"
#include "ui/controllers/volume_controller.h"
#include "ui/theme/desktop_theme.h"
#include "ui/theme/wavelark_style.h"
#include "ui/window_fixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSignalSpy>
#include <QSlider>
#include <QTimer>

using namespace std::chrono_literals;

namespace {

const auto kAddress = QStringLiteral("http://radio.example:8000/live");

/// Answers the next message box with the button of this role, and counts it.
void answerNextBox(QMessageBox::ButtonRole role, int* count) {
    QTimer::singleShot(0, [role, count] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        ++*count;
        for (QAbstractButton* button : box->buttons()) {
            if (box->buttonRole(button) == role) {
                button->click();
            }
        }
    });
}

} // namespace

TEST_F(WindowTest, AddressAndEnterPlay) {
    open();
    EXPECT_EQ(window->objectName(), QStringLiteral("TR_MainWindow"));
    EXPECT_EQ(window->minimumWidth(), 320);
    playAddress(QStringLiteral("  radio.example:8000/live "));
    EXPECT_EQ(player.calls, QStringList{QStringLiteral("play ") + kAddress});
    EXPECT_EQ(text("statusText"), QStringLiteral("Connecting…"));

    playAddress(QStringLiteral("no address at all"));
    EXPECT_EQ(player.calls.size(), 1);
    EXPECT_TRUE(child("messageBar")->isVisible());
    EXPECT_TRUE(text("messageBar").contains(QStringLiteral("no address at all")));
}

TEST_F(WindowTest, ShowsWhatIsHeardInEveryState) {
    open();
    EXPECT_EQ(text("titleText"), QStringLiteral("Nothing is playing"));
    playAddress(kAddress);
    StreamInfo info;
    info.stationName = QStringLiteral("Loud <b>FM</b>");
    info.bitrate = 64;
    player.becomePlaying(info);
    EXPECT_EQ(text("titleText"), QStringLiteral("Loud <b>FM</b>"));
    EXPECT_EQ(text("statusText"), QStringLiteral("Playing · 64 kbit/s"));
    player.sendTitle(QStringLiteral("Artist - Song\nof two lines"));
    EXPECT_EQ(text("titleText"), QStringLiteral("Artist - Song of two lines"));
    EXPECT_EQ(text("stationText"), QStringLiteral("Loud <b>FM</b>"));
    EXPECT_TRUE(window->windowTitle().startsWith(QStringLiteral("Artist - Song")));

    const QPair<PlayState, const char*> states[] = {
        {PlayState::Stalled, "Waiting for data…"},
        {PlayState::Reconnecting, "Connection lost. Reconnecting…"},
        {PlayState::Playing, "Playing · 64 kbit/s"},
        {PlayState::Stopped, "Stopped"}};
    for (const auto& state : states) {
        player.setState(state.first);
        EXPECT_EQ(text("statusText"), QString::fromUtf8(state.second));
    }
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Wavelark"));
}

TEST_F(WindowTest, PausesAndGoesBackToLive) {
    open();
    EXPECT_FALSE(child("pauseButton")->isEnabled());
    playAddress(kAddress);
    player.becomePlaying();
    EXPECT_TRUE(child("pauseButton")->isEnabled());
    EXPECT_FALSE(child("liveButton")->isVisible());
    press(Qt::Key_Space, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(player.calls.last(), QStringLiteral("pause station"));
    EXPECT_EQ(child("pauseButton")->accessibleName(), QStringLiteral("Go on"));
    StreamInfo info;
    info.behindLiveMs = 125000;
    player.becomePlaying(info);
    EXPECT_TRUE(child("liveButton")->isVisible());
    EXPECT_TRUE(text("statusText").contains(QStringLiteral("2:05 behind live")));
    press(Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(player.calls.last(), QStringLiteral("live"));
    EXPECT_FALSE(child("liveButton")->isVisible());
}

TEST_F(WindowTest, StatusLinesShowUntilTheStateChanges) {
    open();
    playAddress(kAddress);
    emit player.sig_statusLine(QStringLiteral("Connecting first try..."), false);
    EXPECT_EQ(text("statusText"), QStringLiteral("Connecting first try..."));
    player.becomePlaying();
    EXPECT_EQ(text("statusText"), QStringLiteral("Playing"));
}

TEST_F(WindowTest, SpacePlaysAndStopsOutsideOfTextFields) {
    open();
    playAddress(kAddress);
    player.becomePlaying();
    player.calls.clear();
    child<QLineEdit>("addressField")->setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(player.calls.isEmpty());
    child("pageList")->setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(player.calls, QStringList{QStringLiteral("stop")});
    child("navigation")->setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(player.calls.last(), QStringLiteral("play ") + kAddress);
    child("muteButton")->setFocus(); // a button does what it says
    press(Qt::Key_Space);
    EXPECT_TRUE(player.isMuted);
    EXPECT_EQ(player.calls.size(), 2);
}

TEST_F(WindowTest, ButtonsAndKeysRecordInEveryMode) {
    open();
    EXPECT_FALSE(child("recordButton")->isEnabled());
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(player.calls.isEmpty());
    playAddress(kAddress);
    player.becomePlaying();
    const Commands& commands = window->commands();
    const struct {
        QAction* action;
        BASS::RecordMode mode;
    } cases[] = {{commands.recordSplit, BASS::RecordMode::Split},
                 {commands.recordNoSplit, BASS::RecordMode::NoSplit},
                 {commands.recordSingleSong, BASS::RecordMode::SingleSong},
                 {commands.recordToggle, BASS::RecordMode::Split}};
    for (const auto& c : cases) {
        c.action->trigger();
        ASSERT_TRUE(player.isRecording()) << c.action->text().toStdString();
        EXPECT_EQ(player.options.mode, c.mode);
        EXPECT_EQ(player.options.station.station, QStringLiteral("radio.example"));
        EXPECT_FALSE(c.action != commands.recordToggle && c.action->isEnabled());
        QTest::mouseClick(child("recordButton"), Qt::LeftButton, Qt::NoModifier, {15, 20});
        EXPECT_FALSE(player.isRecording());
    }
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(player.isRecording());
}

TEST_F(WindowTest, RecordingStateIsPlainToSee) {
    open();
    EXPECT_FALSE(child("recordingStrip")->isVisible());
    playAddress(kAddress);
    player.becomePlaying();
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(child("recordingStrip")->isVisible());
    EXPECT_EQ(text("recordButton"), QStringLiteral("Stop recording"));
    BASS::RecordingProgress progress;
    progress.path = settings.folder + QStringLiteral("/Station/Artist - Song.mp3");
    progress.fileBytes = 2411725;
    progress.files = 3;
    progress.fileDuration = 185s;
    emit player.sig_recordingProgress(progress);
    EXPECT_EQ(text("recordingFile"), QStringLiteral("Recording: Artist - Song.mp3"));
    EXPECT_TRUE(text("recordingNumbers").contains(QStringLiteral("3:05 · 2.3 MB · 3 tracks")));
    QTest::mouseClick(child("openRecordingFolder"), Qt::LeftButton);
    EXPECT_EQ(opened, QStringList{settings.folder + QStringLiteral("/Station")});
    player.stopRecording();
    EXPECT_FALSE(child("recordingStrip")->isVisible());
}

TEST_F(WindowTest, AFailedRecordingSaysWhyAndIsTriedAgain) {
    open();
    playAddress(kAddress);
    player.becomePlaying();
    window->commands().recordNoSplit->trigger();
    player.failRecording({BASS::RecordingErrorKind::CannotWrite,
                          QStringLiteral("Recording failed - Unable to write to disk"),
                          QStringLiteral("No space left on device")});
    EXPECT_FALSE(child("recordingStrip")->isVisible());
    EXPECT_TRUE(text("messageBar").contains(QStringLiteral("No space left on device")));
    QTest::mouseClick(child("messageAction"), Qt::LeftButton);
    EXPECT_FALSE(child("messageBar")->isVisible());
    EXPECT_TRUE(player.isRecording());
    EXPECT_EQ(player.options.mode, BASS::RecordMode::NoSplit);
}

TEST_F(WindowTest, AFailedConnectSaysWhyAndIsTriedAgain) {
    open();
    playAddress(kAddress);
    player.failToConnect(QStringLiteral("Failed to connect at this time"));
    EXPECT_TRUE(child("messageBar")->isVisible());
    EXPECT_EQ(child<QAbstractButton>("messageAction")->text(), QStringLiteral("Try again"));
    EXPECT_TRUE(played.stations().isEmpty()); // never heard: not among the stations played
    QTest::mouseClick(child("messageAction"), Qt::LeftButton);
    EXPECT_EQ(player.calls.last(), QStringLiteral("play ") + kAddress);
    player.failToConnect(QStringLiteral("Failed to connect at this time"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(child("messageBar")->isVisible());
}

TEST_F(WindowTest, VolumeAndMute) {
    settings.storedVolume = 30;
    open();
    EXPECT_EQ(player.volume, 30);
    child("pageList")->setFocus();
    press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(player.volume, 35);
    EXPECT_EQ(settings.storedVolume, 35);
    child<QSlider>("volumeSlider")->setValue(80);
    EXPECT_EQ(player.volume, 80);
    press(Qt::Key_M, Qt::ControlModifier);
    EXPECT_TRUE(player.isMuted);
    EXPECT_EQ(text("muteButton"), QStringLiteral("Unmute"));
    EXPECT_EQ(settings.storedVolume, 80);
    press(Qt::Key_Down, Qt::ControlModifier); // a new volume is meant to be heard
    EXPECT_FALSE(player.isMuted);
    EXPECT_EQ(player.volume, 75);
    for (int n = 0; n < 30; ++n) {
        press(Qt::Key_Up, Qt::ControlModifier);
    }
    EXPECT_EQ(player.volume, 100);
}

TEST_F(WindowTest, AnotherStationEndsARecordingOnlyWhenAskedTwice) {
    open();
    playAddress(kAddress);
    player.becomePlaying();
    press(Qt::Key_R, Qt::ControlModifier);
    playAddress(QStringLiteral("http://other.example/"));
    EXPECT_TRUE(player.isRecording());
    EXPECT_EQ(player.station().playUrl(), kAddress);
    QTest::mouseClick(child("messageAction"), Qt::LeftButton);
    EXPECT_FALSE(player.isRecording());
    EXPECT_EQ(player.station().playUrl(), QStringLiteral("http://other.example/"));
}

/// The recorder completes a file while the next recording is already wanted.
TEST_F(WindowTest, ARecordingThatIsBeingCompletedIsWaitedFor) {
    open();
    playAddress(kAddress);
    player.becomePlaying();
    player.isSlowToFinish = true;
    press(Qt::Key_R, Qt::ControlModifier);
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_FALSE(child("recordingStrip")->isVisible());
    window->commands().recordSingleSong->trigger();
    EXPECT_EQ(player.calls.count(QStringLiteral("record")), 1);
    player.finishRecording();
    EXPECT_EQ(player.calls.count(QStringLiteral("record")), 2);
    EXPECT_EQ(player.options.mode, BASS::RecordMode::SingleSong);
}

TEST_F(WindowTest, ClosingWhileRecordingAsksOnceAndCompletesTheFile) {
    open();
    QSignalSpy quit(window.get(), &AllSkylarkRadio::sig_quitRequested);
    playAddress(kAddress);
    player.becomePlaying();
    press(Qt::Key_R, Qt::ControlModifier);
    int boxes = 0;
    answerNextBox(QMessageBox::RejectRole, &boxes);
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(player.isRecording());
    EXPECT_EQ(quit.count(), 0);

    player.isSlowToFinish = true;
    answerNextBox(QMessageBox::AcceptRole, &boxes);
    EXPECT_TRUE(window->close());
    EXPECT_EQ(boxes, 2);
    EXPECT_EQ(player.calls.last(), QStringLiteral("stop recording"));
    EXPECT_EQ(quit.count(), 0); // the file is not complete yet
    player.finishRecording();
    EXPECT_EQ(quit.count(), 1);
    EXPECT_FALSE(settings.geometry.isEmpty());
}

TEST_F(WindowTest, ClosingAsksNobodyWhereThereIsNothingToLose) {
    open();
    QSignalSpy quit(window.get(), &AllSkylarkRadio::sig_quitRequested);
    settings.isAsking = false;
    playAddress(kAddress);
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(window->close());
    EXPECT_EQ(quit.count(), 1);
    EXPECT_FALSE(player.isRecording());
}

TEST_F(WindowTest, ElapsedTimeRunsWhileTheStationIsHeard) {
    open();
    playAddress(kAddress);
    clock.passed += 5s; // connecting does not count
    player.becomePlaying();
    clock.passed += 65s;
    player.setState(PlayState::Stalled);
    EXPECT_EQ(window->playController().elapsed(), 65s);
    EXPECT_EQ(child<QLabel>("elapsedText")->text(), QStringLiteral("1:05"));
    player.stop();
    EXPECT_EQ(child<QLabel>("elapsedText")->text(), QString());
}

TEST_F(WindowTest, EveryCommandIsInTheMenusAndNoKeysCollide) {
    open();
    QSet<QAction*> inMenus;
    QList<QMenu*> menus = window->menuBar()->findChildren<QMenu*>();
    for (QMenu* menu : menus) {
        for (QAction* action : menu->actions()) {
            inMenus.insert(action);
        }
    }
    QMap<QString, QString> keys;
    for (QAction* command : window->commands().all()) {
        EXPECT_TRUE(inMenus.contains(command)) << command->text().toStdString();
        const QString sequence = command->shortcut().toString();
        EXPECT_FALSE(!sequence.isEmpty() && keys.contains(sequence)) << sequence.toStdString();
        keys.insert(sequence, command->text());
    }
}

TEST_F(WindowTest, ThemesChangeTheColoursAtOnce) {
    open();
    for (QAction* theme : window->commands().themes) {
        const auto choice = static_cast<ThemeChoice>(theme->data().toInt());
        theme->trigger();
        EXPECT_EQ(settings.storedTheme, choice);
        EXPECT_EQ(isDark(window->palette()), choice == ThemeChoice::Dark);
    }
    WavelarkStyle::install(ThemeChoice::Light);
}

TEST_F(WindowTest, DesktopDecidesOnTheThemeWhereTheUserHasNot) {
    using Scheme = WindowsThemeWatcher::Scheme;
    open();
    WindowsThemeWatcher desktop(QStringLiteral("Software\\no such key"));
    followDesktopTheme(desktop);
    const struct {
        ThemeChoice choice;
        Scheme scheme;
        bool isDark;
    } cases[] = {
        {ThemeChoice::System, Scheme::Dark, true},
        {ThemeChoice::System, Scheme::Light, false},
        {ThemeChoice::Light, Scheme::Dark, false},
        {ThemeChoice::Dark, Scheme::Light, true},
        {ThemeChoice::System, Scheme::Dark, true},
    };
    for (const auto& c : cases) {
        WavelarkStyle::install(c.choice);
        emit desktop.sig_schemeChanged(c.scheme);
        EXPECT_EQ(isDark(window->palette()), c.isDark) << static_cast<int>(c.choice);
    }
    WavelarkStyle::install(ThemeChoice::Light);
    emit desktop.sig_schemeChanged(Scheme::Unknown);
}

TEST_F(WindowTest, FitsIntoTheSmallestWidthInEveryState) {
    open();
    playAddress(kAddress);
    player.becomePlaying();
    player.sendTitle(QString(300, QLatin1Char('W')));
    press(Qt::Key_R, Qt::ControlModifier);
    player.failToConnect(QString(200, QLatin1Char('x')) + QStringLiteral(" could not be reached"));
    window->resize(320, 600);
    EXPECT_EQ(window->width(), 320);
    QCoreApplication::processEvents();
    for (const char* name : {"playButton",
                             "recordButton",
                             "muteButton",
                             "volumeSlider",
                             "titleText",
                             "messageClose",
                             "addressField"}) {
        const QWidget* widget = child(name);
        const QRect place(widget->mapTo(window.get(), QPoint(0, 0)), widget->size());
        EXPECT_TRUE(window->rect().contains(place)) << name;
    }
    EXPECT_FALSE(child("titleText")->toolTip().isEmpty());
}
