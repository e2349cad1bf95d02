#pragma once

#include "ui/folder_opener.h"
#include "ui/models/log_model.h"
#include "ui/pages/page_registry.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>

class AddressBar;
class Clock;
class Commands;
class MessageBar;
class NavigationList;
class Page;
class PlayController;
class Player;
class PlayerBar;
class QStackedWidget;
class RecordController;
class UiSettings;
class VolumeController;

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

    void showMessage(const Message& message);
    /// Completes a recording, then sig_quitRequested(); asks nobody. For signals of the system, end
    /// actions and closing.
    void finishAndQuit();

  public slots:
    void slot_Init();
    void slot_connectLastStation();
    void slot_bringToFont();

  signals:
    /// Everything is on disk: the event loop may end.
    void sig_quitRequested();
    /// slot_Init() is through.
    void sig_initialised();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void makeRegistry();
    void layOut();
    void wirePlayer();
    void wireCommands();
    void restore();
    void showPage(int index);
    void showHeard();
    void showRecording();
    void songChanged(const BASS::Song& song);
    [[nodiscard]] bool askWhileRecording();
    void showAbout();

    WindowServices m_services;
    PlayController* m_play;
    RecordController* m_record;
    VolumeController* m_volume;
    FolderOpener* m_opener;
    LogModel m_log;
    PageRegistry m_registry;
    Commands* m_commands = nullptr;
    AddressBar* m_address = nullptr;
    NavigationList* m_navigation = nullptr;
    QStackedWidget* m_stack = nullptr;
    MessageBar* m_messages = nullptr;
    PlayerBar* m_bar = nullptr;
    QTimer m_second;
    bool m_isQuitting = false;
    bool m_wasRecording = false;
};
