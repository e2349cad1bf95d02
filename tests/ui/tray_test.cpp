#include "ui/commands.h"
#include "ui/tray_icon.h"
#include "ui/window_fixture.h"
#include "ui/window_presenter.h"

#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>

namespace {

class TrayTest : public WindowTest {
  protected:
    TrayTest() {
        hasTray = true;
        settings.tray.isShown = true;
    }

    TrayIcon& tray() { return window->findChild<WindowPresenter*>()->tray(); }
    void run(const char* option) {
        window->processArgs({QStringLiteral("wavelark"), QString::fromLatin1(option)}, true);
    }
};

void collect(const QMenu& menu, QSet<const QAction*>& found) {
    for (const QAction* action : menu.actions()) {
        if (action->menu() != nullptr) {
            collect(*action->menu(), found);
        } else {
            found.insert(action);
        }
    }
}

} // namespace

TEST_F(TrayTest, ItsMenuReachesEveryCommandOfTheMenuBar) {
    languages = {{QStringLiteral("German.lng"), QStringLiteral("Deutsch")}};
    open();
    QSet<const QAction*> inTray;
    collect(tray().menu(), inTray);
    EXPECT_GT(inTray.size(), 25);
    for (const QAction* command : window->commands().all()) {
        EXPECT_TRUE(inTray.contains(command)) << command->text().toStdString();
    }
}

TEST_F(TrayTest, NothingIsToldEachSecondToAWindowThatNobodySees) {
    open();
    EXPECT_TRUE(player.isWatched);
    window->commands().toggleWindow->trigger();
    EXPECT_TRUE(window->isHidden());
    EXPECT_FALSE(player.isWatched);
    window->commands().toggleWindow->trigger();
    EXPECT_TRUE(player.isWatched);
    window->showMinimized();
    EXPECT_FALSE(player.isWatched);
}

TEST_F(TrayTest, ClicksOfTheMouse) {
    TrayOptions silent;
    silent.isMutedByClick = false;
    EXPECT_EQ(trayActFor(QSystemTrayIcon::Trigger, {}), TrayAct::ToggleWindow);
    EXPECT_EQ(trayActFor(QSystemTrayIcon::MiddleClick, {}), TrayAct::ToggleMute);
    EXPECT_EQ(trayActFor(QSystemTrayIcon::MiddleClick, silent), TrayAct::None);
    // it follows a Trigger, and would undo it
    EXPECT_EQ(trayActFor(QSystemTrayIcon::DoubleClick, {}), TrayAct::None);
    EXPECT_EQ(trayActFor(QSystemTrayIcon::Context, {}), TrayAct::None);

    open();
    tray().clicked(QSystemTrayIcon::MiddleClick);
    EXPECT_TRUE(player.isMuted);
    tray().clicked(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(window->isHidden());
    tray().clicked(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(TrayTest, ToolTipTellsWhatIsHeard) {
    open();
    EXPECT_EQ(tray().toolTip(), QStringLiteral("Wavelark"));
    playAddress(QStringLiteral("http://one.example/"));
    StreamInfo info;
    info.stationName = QStringLiteral("Radio One");
    player.becomePlaying(info);
    player.sendTitle(QStringLiteral("Artist - Song"));
    EXPECT_EQ(tray().toolTip(), QStringLiteral("Radio One\nArtist - Song"));
    player.stop();
    EXPECT_EQ(tray().toolTip(), QStringLiteral("Wavelark"));
    settings.tray.isToolTipUpdated = false;
    tray().setOptions(settings.tray);
    player.becomePlaying(info);
    EXPECT_EQ(tray().toolTip(), QStringLiteral("Wavelark"));
}

TEST_F(TrayTest, WhatHidesTheWindowAndWhatDoesNot) {
    const struct {
        const char* what;
        TrayOptions options;
        bool hasTray;
        void (*act)(AllSkylarkRadio&);
        bool isHidden;
        bool isMinimized;
        bool isQuitting;
    } cases[] = {
        {"close", {true, true, true}, true, [](auto& w) { w.close(); }, true, false, false},
        {"close, not asked for", {}, true, [](auto& w) { w.close(); }, true, false, true},
        {"close, no tray",
         {true, true, true},
         false,
         [](auto& w) { w.close(); },
         true,
         false,
         true},
        {"close, no icon",
         {false, true, true},
         true,
         [](auto& w) { w.close(); },
         true,
         false,
         true},
        {"quit",
         {true, true, true},
         true,
         [](auto& w) { w.commands().quit->trigger(); },
         true,
         false,
         true},
        {"minimise",
         {true, true, false, true},
         true,
         [](auto& w) { w.showMinimized(); },
         true,
         true,
         false},
        {"minimise, not asked for",
         {},
         true,
         [](auto& w) { w.showMinimized(); },
         false,
         true,
         false},
        {"minimise, no tray",
         {true, true, false, true},
         false,
         [](auto& w) { w.showMinimized(); },
         false,
         true,
         false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        settings.tray = c.options;
        hasTray = c.hasTray;
        open();
        QSignalSpy quit(window.get(), &AllSkylarkRadio::sig_quitRequested);
        c.act(*window);
        if (c.isHidden) {
            EXPECT_TRUE(QTest::qWaitFor([this] { return window->isHidden(); }));
        }
        EXPECT_EQ(window->isHidden(), c.isHidden);
        EXPECT_EQ(window->isMinimized(), c.isMinimized);
        EXPECT_EQ(quit.count(), c.isQuitting ? 1 : 0);
        window.reset();
    }
}

TEST_F(TrayTest, CommandLinesShowAndHide) {
    open();
    run("/show=minimizedtotray");
    EXPECT_TRUE(window->isHidden());
    EXPECT_TRUE(tray().isVisible());
    window->processArgs({QStringLiteral("wavelark")}, true);
    EXPECT_TRUE(window->isVisible());
    window->setWindowState(Qt::WindowMaximized | Qt::WindowMinimized);
    run("/name=x");
    EXPECT_EQ(window->windowState() & (Qt::WindowMaximized | Qt::WindowMinimized),
              Qt::WindowMaximized);
    run("/show=minimized");
    EXPECT_TRUE(window->isMinimized());
    EXPECT_FALSE(window->isHidden());
    hasTray = false;
    run("/show=minimizedtotray");
    EXPECT_TRUE(window->isMinimized());
    EXPECT_FALSE(window->isHidden()); // nothing would bring it back
}

TEST_F(TrayTest, TheIconComesAndGoesWithTheOptions) {
    settings.tray.isPersistent = false;
    open();
    EXPECT_FALSE(tray().isVisible());
    window->commands().toggleWindow->trigger();
    EXPECT_TRUE(tray().isVisible());
    EXPECT_EQ(window->commands().toggleWindow->text(), QStringLiteral("&Show the window"));
    // The icon is taken away while the window is hidden: it must not be lost.
    settings.tray.isShown = false;
    window->findChild<WindowPresenter*>()->setTrayOptions(settings.tray);
    EXPECT_FALSE(tray().isVisible());
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->commands().toggleWindow->isEnabled());
}
