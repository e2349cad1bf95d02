#include "ui/main_menu.h"

#include "ui/commands.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

#include <functional>

namespace {

struct MainMenu {
    Q_DECLARE_TR_FUNCTIONS(MainMenu)
};

using AddMenu = std::function<QMenu*(const QString&)>;

void fillMenus(const AddMenu& add, const Commands& commands) {
    QMenu* station = add(MainMenu::tr("&Station"));
    station->addActions(
        {commands.openAddress, commands.playStop, commands.playLast, commands.playDevice});
    station->addSeparator();
    station->addActions({commands.pause, commands.goLive});
    station->addSeparator();
    station->addAction(commands.quit);

    QMenu* recording = add(MainMenu::tr("&Recording"));
    recording->addAction(commands.recordToggle);
    recording->addSeparator();
    recording->addActions(
        {commands.recordSplit, commands.recordNoSplit, commands.recordSingleSong});
    recording->addAction(commands.recordKeepLast);
    recording->addSeparator();
    recording->addActions(
        {commands.recordPause, commands.recordStop, commands.openRecordingFolder});

    QMenu* sound = add(MainMenu::tr("S&ound"));
    sound->addActions({commands.mute, commands.volumeUp, commands.volumeDown});
    sound->addSeparator();
    sound->addAction(commands.sound);
    sound->addMenu(MainMenu::tr("&Dynamic boost"))->addActions(commands.boosts.toList());
    sound->addActions({commands.autoVolume, commands.compressor});
    sound->addSeparator();
    sound->addActions({commands.mono, commands.swapChannels});

    QMenu* view = add(MainMenu::tr("&View"));
    view->addActions(commands.pages.toList());
    view->addSeparator();
    view->addActions({commands.filter, commands.closeMessage, commands.toggleWindow});
    view->addSeparator();
    view->addMenu(MainMenu::tr("&Theme"))->addActions(commands.themes.toList());
    QMenu* language = view->addMenu(MainMenu::tr("&Language"));
    language->addActions(commands.languages.toList());
    language->setEnabled(!language->isEmpty());

    QMenu* tools = add(MainMenu::tr("&Tools"));
    tools->addAction(commands.settings);

    QMenu* help = add(MainMenu::tr("&Help"));
    help->addActions({commands.shortcuts, commands.about});
}

} // namespace

void fillMenuBar(QMenuBar& bar, const Commands& commands) {
    fillMenus([&bar](const QString& title) { return bar.addMenu(title); }, commands);
}

void fillTrayMenu(QMenu& menu, const Commands& commands) {
    menu.addActions(
        {commands.toggleWindow, commands.playStop, commands.recordToggle, commands.mute});
    menu.addSeparator();
    fillMenus([&menu](const QString& title) { return menu.addMenu(title); }, commands);
    menu.addSeparator();
    menu.addAction(commands.quit);
}
