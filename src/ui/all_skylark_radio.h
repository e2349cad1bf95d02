#pragma once

#include "app/command_line.h"
#include "app/language_manager.h"
#include "ui/folder_opener.h"
#include "ui/models/log_model.h"
#include "ui/pages/page_registry.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>

class AddressBar;
class Clock;
class CommandLineController;
class Commands;
class EndActionTimer;
class MessageBar;
class NavigationList;
class Page;
class PlayController;
class Player;
struct Preferences;
class PlayerBar;
class QStackedWidget;
class QuitController;
class RecordController;
class SoundController;
class UiSettings;
class VolumeController;
class WindowPresenter;

namespace BASS {
class PlayedStations;
struct Song;
} // namespace BASS

/// What the main window works with. All of it outlives the window.
struct WindowServices {
    Player& player;
    BASS::PlayedStations& played;
    UiSettings& settings;
    const Clock& clock;
    FolderOpener::OpenUrl openUrl;
    /// Puts the computer to sleep, hibernates or shuts it down. Empty: done; else why it was not.
    std::function<QString(EndAction)> power;
    QStringList arguments;         ///< of the process, the program path first
    QVector<Language> languages{}; ///< that can be chosen
    std::function<bool()> hasTray = [] { return false; }; ///< a tray to hide in is there now
    bool hasDisplay = true; ///< false: the window is never shown, which saves its painting
};

/// The main window. It puts views and controllers together and holds no logic of its own.
///
/// *Thread*: GUI. *Owner*: main(). *Life*: slot_Init() runs 100 ms after construction. Closing it
/// asks once while recording, then completes the file, then emits sig_quitRequested().
class AllSkylarkRadio : public QMainWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AllSkylarkRadio)

  public:
    explicit AllSkylarkRadio(const WindowServices& services, QWidget* parent = nullptr);
    ~AllSkylarkRadio() override;

    [[nodiscard]] PlayController& playController() { return *m_play; }
    [[nodiscard]] RecordController& recordController() { return *m_record; }
    [[nodiscard]] VolumeController& volumeController() { return *m_volume; }
    [[nodiscard]] const Commands& commands() const { return *m_commands; }

    /// Carries out a command line, the program path first. True where it was acted on.
    bool processArgs(const QStringList& arguments, bool isFromOtherInstance);

    /// Shows it the first time: to be seen, or in the tray where the settings say so.
    void showAtStart();

    void showMessage(const Message& message);
    /// Sentences from before the window was there; one message for all of them.
    void showNotes(const QStringList& notes);
    /// Completes a recording, then sig_quitRequested(); asks nobody. For signals of the system, end
    /// actions and closing.
    void finishAndQuit();

  public slots:
    void slot_Init();
    void slot_connectLastStation();
    void slot_bringToFont();
    /// Brings what taskbar and tray show up to date.
    void slot_updateTaskBarWinButtons();
    /// A command line from another instance.
    void slot_receivedMessage(quint32 instanceId, const QByteArray& message);

  signals:
    /// The settings dialog has changed them.
    void sig_preferencesChanged();
    /// Everything is on disk: the event loop may end.
    void sig_quitRequested();
    void sig_messageShown(const Message& message);

  protected:
    /// Takes the engine's cuts.
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void layOut();
    void wirePlayer();
    void wireCommands();
    void wireChoices();
    void checkChoices();
    void wireCommandLine();
    void restore();
    void showPage(int index);
    void setWatched(bool isWatched);
    void showHeard();
    void showRecording();
    void songChanged(const BASS::Song& song);
    [[nodiscard]] bool askWhileRecording();
    void chooseLanguage(const QString& file);
    void askAndQuit();
    void showSettings();
    void preferencesChanged(const Preferences& before, const Preferences& after);
    void carryOutEnd(EndAction action);

    WindowServices m_services;
    PlayController* m_play;
    RecordController* m_record;
    VolumeController* m_volume;
    SoundController* m_sound;
    QuitController* m_quit;
    EndActionTimer* m_endAction;
    CommandLineController* m_commandLine;
    FolderOpener* m_opener;
    LogModel m_log;
    PageRegistry m_registry;
    Commands* m_commands = nullptr;
    WindowPresenter* m_presenter = nullptr;
    AddressBar* m_address = nullptr;
    NavigationList* m_navigation = nullptr;
    QStackedWidget* m_stack = nullptr;
    MessageBar* m_messages = nullptr;
    PlayerBar* m_bar = nullptr;
    QTimer m_second;
    bool m_isWatched = false;
    bool m_wasActive = false;
    bool m_wasRecording = false;
    bool m_wasPaused = false;
};
