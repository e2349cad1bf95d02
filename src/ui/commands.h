#pragma once

#include "app/language_manager.h"
#include "ui/pages/page_registry.h"
#include "ui/theme/theme.h"

#include <QAction>
#include <QObject>
#include <QVector>

class Player;
class PlayController;
class RecordController;
class SoundController;
class VolumeController;

/// Every command of the window as an action with text, keys and state. Menus, buttons and the list
/// of shortcuts all take them from here.
///
/// *Thread*: GUI. *Owner*: the main window; the controllers outlive it.
class Commands final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Commands)

  public:
    struct Controllers {
        Player& player;
        PlayController& play;
        RecordController& record;
        VolumeController& volume;
        SoundController& sound;
    };

    Commands(const Controllers& controllers,
             const PageRegistry& pages,
             const QVector<Language>& languages,
             QObject* parent);

    QAction* playStop;
    QAction* playLast;
    QAction* playDevice;
    QAction* pause;  ///< "Pause" or "Go on", as it stands
    QAction* goLive; ///< enabled where what is heard lies behind
    QAction* openAddress;
    QAction* quit;
    QAction* recordToggle; ///< "Record" or "Stop recording", as it stands
    QAction* recordSplit;
    QAction* recordNoSplit;
    QAction* recordSingleSong;
    QAction* recordKeepLast;
    QAction* recordPause; ///< "Pause recording" or "Resume recording", as it stands
    QAction* recordStop;
    QAction* openRecordingFolder;
    QAction* mute;
    QAction* volumeUp;
    QAction* volumeDown;
    QAction* sound;           ///< the dialog with the equalizer
    QVector<QAction*> boosts; ///< checkable; data() is the DynamicBoost as int
    QAction* autoVolume;
    QAction* compressor;
    QAction* mono;
    QAction* swapChannels;
    QAction* filter;
    QAction* closeMessage;
    QAction* toggleWindow; ///< hides the window in the tray, or shows it
    QAction* settings;
    QAction* shortcuts;
    QAction* about;
    QVector<QAction*> pages;     ///< checkable, one per page
    QVector<QAction*> themes;    ///< checkable; data() is the ThemeChoice as int
    QVector<QAction*> languages; ///< checkable; data() is the language's file

    /// All that have keys, in the order of the menus.
    [[nodiscard]] QVector<QAction*> all() const { return m_all; }

  private:
    QAction* make(const QString& text, const QString& iconName, const QKeySequence& keys);
    void makePlay();
    void makeRecord();
    void makeSound();
    void makeEffects();
    void updateEffects();
    void makeView(const PageRegistry& registry);
    void makeThemes();
    void makeLanguages(const QVector<Language>& languages);
    void update();

    Controllers m_controllers;
    QVector<QAction*> m_all;
};
