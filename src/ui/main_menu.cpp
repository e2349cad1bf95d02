#include "ui/main_menu.h"

#include "ui/commands.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace {

QString text(const char* source) {
    return QCoreApplication::translate("MainMenu", source);
}

} // namespace

void fillMenuBar(QMenuBar& bar, const Commands& commands) {
    QMenu* station = bar.addMenu(text("&Station"));
    station->addActions({commands.openAddress, commands.playStop, commands.playLast});
    station->addSeparator();
    station->addAction(commands.quit);

    QMenu* recording = bar.addMenu(text("&Recording"));
    recording->addAction(commands.recordToggle);
    recording->addSeparator();
    recording->addActions(
        {commands.recordSplit, commands.recordNoSplit, commands.recordSingleSong});
    recording->addSeparator();
    recording->addActions({commands.recordStop, commands.openRecordingFolder});

    QMenu* sound = bar.addMenu(text("S&ound"));
    sound->addActions({commands.mute, commands.volumeUp, commands.volumeDown});

    QMenu* view = bar.addMenu(text("&View"));
    view->addActions(commands.pages.toList());
    view->addSeparator();
    view->addActions({commands.filter, commands.closeMessage});
    view->addSeparator();
    view->addMenu(text("&Theme"))->addActions(commands.themes.toList());

    QMenu* help = bar.addMenu(text("&Help"));
    help->addActions({commands.shortcuts, commands.about});
}
