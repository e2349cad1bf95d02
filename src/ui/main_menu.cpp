#include "ui/main_menu.h"

#include "ui/commands.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace {

struct MainMenu {
    Q_DECLARE_TR_FUNCTIONS(MainMenu)
};

} // namespace

void fillMenuBar(QMenuBar& bar, const Commands& commands) {
    QMenu* station = bar.addMenu(MainMenu::tr("&Station"));
    station->addActions({commands.openAddress, commands.playStop, commands.playLast});
    station->addSeparator();
    station->addAction(commands.quit);

    QMenu* recording = bar.addMenu(MainMenu::tr("&Recording"));
    recording->addAction(commands.recordToggle);
    recording->addSeparator();
    recording->addActions(
        {commands.recordSplit, commands.recordNoSplit, commands.recordSingleSong});
    recording->addSeparator();
    recording->addActions({commands.recordStop, commands.openRecordingFolder});

    QMenu* sound = bar.addMenu(MainMenu::tr("S&ound"));
    sound->addActions({commands.mute, commands.volumeUp, commands.volumeDown});

    QMenu* view = bar.addMenu(MainMenu::tr("&View"));
    view->addActions(commands.pages.toList());
    view->addSeparator();
    view->addActions({commands.filter, commands.closeMessage});
    view->addSeparator();
    view->addMenu(MainMenu::tr("&Theme"))->addActions(commands.themes.toList());
    QMenu* language = view->addMenu(MainMenu::tr("&Language"));
    language->addActions(commands.languages.toList());
    language->setEnabled(!language->isEmpty());

    QMenu* help = bar.addMenu(MainMenu::tr("&Help"));
    help->addActions({commands.shortcuts, commands.about});
}
