#include "ui/all_skylark_radio.h"

#include "base/clock.h"
#include "base/log.h"
#include "engine/engine_events.h"
#include "stations/played_stations.h"
#include "ui/announcer.h"
#include "ui/commands.h"
#include "ui/controllers/command_line_controller.h"
#include "ui/controllers/end_action_timer.h"
#include "ui/controllers/play_controller.h"
#include "ui/controllers/quit_controller.h"
#include "ui/controllers/record_controller.h"
#include "ui/controllers/sound_controller.h"
#include "ui/controllers/volume_controller.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/main_menu.h"
#include "ui/pages/page.h"
#include "ui/pages/standard_pages.h"
#include "ui/player.h"
#include "ui/state_text.h"
#include "ui/theme/icons.h"
#include "ui/theme/wavelark_style.h"
#include "ui/tray_icon.h"
#include "ui/ui_settings.h"
#include "ui/widgets/address_bar.h"
#include "ui/widgets/message_bar.h"
#include "ui/widgets/navigation_list.h"
#include "ui/widgets/peak_meter.h"
#include "ui/widgets/player_bar.h"
#include "ui/widgets/shortcuts_dialog.h"
#include "ui/window_dialogs.h"
#include "ui/window_presenter.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int kCompactWidth = 640;
const auto kWindowName = QStringLiteral("Main");

} // namespace

AllSkylarkRadio::AllSkylarkRadio(const WindowServices& services, QWidget* parent)
    : QMainWindow(parent), m_services(services),
      m_play(new PlayController(services.player, services.played, services.clock, this)),
      m_record(new RecordController(services.player, services.settings, this)),
      m_volume(new VolumeController(services.player, services.settings, this)),
      m_sound(new SoundController(services.player, services.settings, this)),
      m_quit(new QuitController({services.player, *m_record, services.settings}, this)),
      m_endAction(new EndActionTimer(services.clock, this)),
      m_commandLine(new CommandLineController(
          {services.player,
           *m_play,
           *m_record,
           *m_volume,
           *m_endAction,
           services.played,
           services.settings},
          [this](std::chrono::milliseconds delay, const std::function<void()>& what) {
              QTimer::singleShot(delay, this, what);
          },
          this)),
      m_opener(new FolderOpener(services.openUrl, this)), m_log(this) {
    setAnimated(false); // nothing docks here
    setObjectName(QStringLiteral("TR_MainWindow"));
    setWindowTitle(QStringLiteral("Wavelark"));
    setWindowIcon(applicationIcon());
    setMinimumWidth(320);
    m_registry = standardPages(
        {services.player, services.played, services.settings, *m_play, *m_opener, m_log});
    m_commands = new Commands({services.player, *m_play, *m_record, *m_volume, *m_sound},
                              m_registry,
                              services.languages,
                              this);
    m_presenter =
        new WindowPresenter({*this, *m_commands, services.hasTray, services.hasDisplay}, this);
    m_presenter->setTrayOptions(services.settings.trayOptions());
    layOut();
    wirePlayer();
    wireCommands();
    wireChoices();
    wireCommandLine();
    m_record->setBoostControl(boostControl(*this, *m_sound, m_services.player));
    restore();
    QTimer::singleShot(100, this, &AllSkylarkRadio::slot_Init);
}

AllSkylarkRadio::~AllSkylarkRadio() {
    m_presenter->disconnect(this); // the base class hides the window, which nothing here is told of
}

void AllSkylarkRadio::layOut() {
    auto* content = new QWidget(this);
    m_address = new AddressBar(content);
    m_navigation = new NavigationList(m_registry, content);
    m_stack = new QStackedWidget(content);
    for (const PageEntry& entry : m_registry) {
        Page* page = entry.create(m_stack);
        page->setObjectName(QStringLiteral("page_") + entry.id);
        connect(page, &Page::sig_message, this, &AllSkylarkRadio::showMessage);
        m_stack->addWidget(page);
    }
    m_messages = new MessageBar(content);
    m_bar = new PlayerBar(*m_commands, content);
    m_bar->meter().setSources(
        [&player = m_services.player] { return player.level(); },
        [&player = m_services.player](QVector<float>& bins) { return player.spectrum(bins); });
    m_bar->meter().setLook(m_services.settings.peakMeter());

    auto* middle = new QHBoxLayout;
    middle->setSpacing(0);
    middle->addWidget(m_navigation);
    middle->addWidget(m_stack, 1);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_address);
    layout->addLayout(middle, 1);
    layout->addWidget(m_messages);
    layout->addWidget(m_bar);
    setCentralWidget(content);
    fillMenuBar(*menuBar(), *m_commands);
}

void AllSkylarkRadio::wirePlayer() {
    Player& player = m_services.player;
    connect(&player, &Player::sig_stateChanged, this, &AllSkylarkRadio::showHeard);
    connect(&player, &Player::sig_stationChanged, this, &AllSkylarkRadio::showHeard);
    connect(&player, &Player::sig_streamInfoChanged, this, &AllSkylarkRadio::showHeard);
    connect(&player, &Player::sig_songChanged, this, &AllSkylarkRadio::songChanged);
    connect(&player, &Player::sig_statusLine, m_bar, &PlayerBar::showStatusLine);
    connect(&player, &Player::sig_logLine, this, [this](const QString& text, bool isError) {
        m_log.append(m_services.clock.now().time(), text, isError);
    });
    connect(m_record, &RecordController::sig_changed, this, &AllSkylarkRadio::showRecording);
    connect(m_volume, &VolumeController::sig_changed, this, [this] {
        m_bar->showVolume(m_volume->volume(), m_volume->isMuted());
    });
    connect(m_bar, &PlayerBar::sig_volumeMoved, m_volume, &VolumeController::setVolume);
    connect(m_address, &AddressBar::sig_playRequested, m_play, &PlayController::playAddress);

    connect(m_play, &PlayController::sig_leavingStream, m_record, &RecordController::leaveStream);
    connect(m_play, &PlayController::sig_message, this, &AllSkylarkRadio::showMessage);
    connect(m_record, &RecordController::sig_message, this, &AllSkylarkRadio::showMessage);
    connect(m_opener, &FolderOpener::sig_message, this, &AllSkylarkRadio::showMessage);
    connect(&m_services.played,
            &BASS::PlayedStations::sig_saveFailed,
            this,
            [this](const QString& text) {
                showMessage({Message::Kind::Error, text, {}, {}});
            });

    m_second.setInterval(1000);
    connect(&m_second, &QTimer::timeout, this, [this] { m_bar->showElapsed(m_play->elapsed()); });
    connect(m_presenter, &WindowPresenter::sig_watchedChanged, this, &AllSkylarkRadio::setWatched);
    player.setWatched(false); // until it is shown
}

void AllSkylarkRadio::setWatched(bool isWatched) {
    m_isWatched = isWatched;
    m_services.player.setWatched(isWatched);
    showHeard();
    if (isWatched) {
        showRecording();
    }
}

void AllSkylarkRadio::wireCommands() {
    const Commands& commands = *m_commands;
    connect(commands.openAddress, &QAction::triggered, m_address, &AddressBar::focusField);
    connect(commands.openRecordingFolder, &QAction::triggered, this, [this] {
        m_opener->openFolder(m_record->folderToShow());
    });
    connect(commands.quit, &QAction::triggered, this, &AllSkylarkRadio::askAndQuit);
    connect(commands.closeMessage, &QAction::triggered, m_messages, &MessageBar::clear);
    connect(commands.filter, &QAction::triggered, this, [this] {
        static_cast<Page*>(m_stack->currentWidget())->focusFilter();
    });
    connect(commands.shortcuts, &QAction::triggered, this, [this] {
        auto* dialog = new ShortcutsDialog(m_commands->all(), this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    });
    connect(commands.settings, &QAction::triggered, this, &AllSkylarkRadio::showSettings);
    connect(
        commands.sound, &QAction::triggered, this, [this] { showSoundDialog(*this, *m_sound); });
    connect(commands.about, &QAction::triggered, this, [this] { showAbout(*this); });
    for (int index = 0; index < commands.pages.size(); ++index) {
        connect(commands.pages.at(index), &QAction::triggered, this, [this, index] {
            m_navigation->setCurrentPage(index);
            static_cast<Page*>(m_stack->currentWidget())->focusContent();
        });
    }
    connect(m_navigation, &NavigationList::sig_pageChosen, this, &AllSkylarkRadio::showPage);
}

void AllSkylarkRadio::wireChoices() {
    for (QAction* theme : m_commands->themes) {
        const auto choice = static_cast<ThemeChoice>(theme->data().toInt());
        connect(theme, &QAction::triggered, this, [this, choice] {
            m_services.settings.setTheme(choice);
            WavelarkStyle::install(choice);
        });
    }
    for (QAction* language : m_commands->languages) {
        const QString file = language->data().toString();
        connect(language, &QAction::triggered, this, [this, file] { chooseLanguage(file); });
    }
    checkChoices();
}

void AllSkylarkRadio::checkChoices() {
    const UiSettings& settings = m_services.settings;
    for (QAction* theme : m_commands->themes) {
        theme->setChecked(static_cast<ThemeChoice>(theme->data().toInt()) == settings.theme());
    }
    for (QAction* language : m_commands->languages) {
        const QString file = language->data().toString();
        language->setChecked(file.compare(settings.languageFile(), Qt::CaseInsensitive) == 0);
    }
}

void AllSkylarkRadio::chooseLanguage(const QString& file) {
    m_services.settings.setLanguageFile(file);
    showMessage({Message::Kind::Information,
                 tr("The language changes when Wavelark starts the next time."),
                 {},
                 {}});
}

void AllSkylarkRadio::wireCommandLine() {
    using Controller = CommandLineController;
    connect(m_commandLine, &Controller::sig_message, this, &AllSkylarkRadio::showMessage);
    connect(m_commandLine, &Controller::sig_showWindow, m_presenter, &WindowPresenter::showAs);
    connect(m_commandLine,
            &Controller::sig_bringToFrontRequested,
            this,
            &AllSkylarkRadio::slot_bringToFont);
    connect(m_commandLine,
            &Controller::sig_taskBarUpdateRequested,
            this,
            &AllSkylarkRadio::slot_updateTaskBarWinButtons);
    connect(m_commandLine,
            &Controller::sig_connectLastStationRequested,
            this,
            &AllSkylarkRadio::slot_connectLastStation);
    connect(m_quit, &QuitController::sig_finished, this, &AllSkylarkRadio::sig_quitRequested);
    connect(m_endAction, &EndActionTimer::sig_due, this, &AllSkylarkRadio::carryOutEnd);
}

void AllSkylarkRadio::restore() {
    const UiSettings& settings = m_services.settings;
    if (!restoreGeometry(settings.windowGeometry(kWindowName))) {
        resize(880, 560);
    }
    const int page = settings.lastPage();
    m_navigation->setCurrentPage(page >= 0 && page < m_stack->count() ? page : 0);
    m_bar->showVolume(m_volume->volume(), m_volume->isMuted());
    m_bar->setPauseButtonShown(settings.isPauseButtonShown());
    showHeard();
    showRecording();
    if (!m_services.played.stations().isEmpty()) {
        static_cast<Page*>(m_stack->currentWidget())->focusContent();
    }
}

void AllSkylarkRadio::slot_Init() {
    if (m_services.settings.autoPlayOnStart()) {
        slot_connectLastStation();
    }
    if (m_services.arguments.size() >= 2) {
        // Deliberate: the window, its lists and the sound device settle first.
        QTimer::singleShot(3000, this, [this] { processArgs(m_services.arguments, false); });
    }
}

bool AllSkylarkRadio::processArgs(const QStringList& arguments, bool isFromOtherInstance) {
    const CommandRecord command = parseCommandLine(arguments);
    qCInfo(lcUi) << "processArgs"
                 << "isFromOtherInstance=" << isFromOtherInstance << command.arguments;
    return m_commandLine->carryOut(command);
}

void AllSkylarkRadio::slot_receivedMessage(quint32 instanceId, const QByteArray& message) {
    const QStringList arguments = forwardedArguments(message);
    qCInfo(lcUi) << "slot_receivedMessage"
                 << "instanceId=" << instanceId << arguments;
    processArgs(arguments, true);
}

void AllSkylarkRadio::slot_connectLastStation() {
    m_play->playLast();
}

void AllSkylarkRadio::slot_bringToFont() {
    m_presenter->bringToFront();
}

void AllSkylarkRadio::slot_updateTaskBarWinButtons() {
    showHeard();
}

void AllSkylarkRadio::showAtStart() {
    m_presenter->showAtStart();
}

void AllSkylarkRadio::carryOutEnd(EndAction action) {
    m_play->stop();
    if (action == EndAction::Exit) {
        finishAndQuit();
    } else if (action != EndAction::StopPlaying) {
        const QString reason = m_services.power(action);
        if (!reason.isEmpty()) {
            showMessage({Message::Kind::Error, reason, {}, {}});
        }
    }
}

void AllSkylarkRadio::showMessage(const Message& message) {
    m_log.append(m_services.clock.now().time(), message.text, message.kind == Message::Kind::Error);
    m_messages->showMessage(message);
    if (isHidden()) {
        m_presenter->tray().popUp(message.text);
    }
    emit sig_messageShown(message);
}

void AllSkylarkRadio::showNotes(const QStringList& notes) {
    if (!notes.isEmpty()) {
        showMessage({Message::Kind::Error, notes.join(QLatin1Char('\n')), {}, {}});
    }
}

void AllSkylarkRadio::showPage(int index) {
    m_stack->setCurrentIndex(index);
    m_commands->pages.at(index)->setChecked(true);
    m_services.settings.setLastPage(index);
}

void AllSkylarkRadio::showHeard() {
    Player& player = m_services.player;
    const PlayState state = player.playState();
    const StreamInfo info = player.streamInfo();
    BASS::StationRecord station = player.station();
    if (station.name.isEmpty() && !info.stationName.isEmpty()) {
        station.name = info.stationName;
    }
    const QString song = isActive(state) ? player.song().track : QString();
    m_bar->showHeard({station.displayName(), song, state, info});
    m_presenter->tray().showHeard(isActive(state) ? station.displayName() : QString(), song);
    if (std::exchange(m_wasActive, isActive(state)) != isActive(state) && isActive(state)) {
        m_address->setAddress(station.playUrl());
    }
    if (!isActive(state) || !m_isWatched) {
        m_second.stop();
    } else if (!m_second.isActive()) {
        m_second.start();
    }
    m_bar->showElapsed(m_play->elapsed());
    setWindowTitle(!isActive(state) ? QStringLiteral("Wavelark")
                   : song.isEmpty() ? tr("%1 – Wavelark").arg(station.displayName())
                                    : tr("%1 – Wavelark").arg(song));
}

void AllSkylarkRadio::songChanged(const BASS::Song& song) {
    showHeard();
    announce(m_bar, song.track, Urgency::Polite);
}

void AllSkylarkRadio::showRecording() {
    const bool isRecording = m_record->isRecording();
    const bool isPaused = m_record->isPaused();
    m_bar->showRecording({isRecording,
                          isPaused,
                          m_record->progress(),
                          m_services.settings.isRecordButtonSplitting()});
    if (isRecording && isPaused != m_wasPaused) {
        announce(
            m_bar, isPaused ? tr("Recording paused") : tr("Recording resumed"), Urgency::Alert);
    }
    m_wasPaused = isPaused;
    if (isRecording != m_wasRecording) {
        m_wasRecording = isRecording;
        announce(
            m_bar, isRecording ? tr("Recording started") : tr("Recording stopped"), Urgency::Alert);
    }
}

bool AllSkylarkRadio::askWhileRecording() {
    if (isHidden()) {
        slot_bringToFont();
    }
    return askToStopRecordingAndQuit(*this);
}

void AllSkylarkRadio::finishAndQuit() {
    m_services.settings.setWindowGeometry(kWindowName, saveGeometry());
    m_quit->finish();
}

void AllSkylarkRadio::askAndQuit() {
    if (!m_quit->mustAsk() || askWhileRecording()) {
        hide();
        finishAndQuit();
    }
}

bool AllSkylarkRadio::event(QEvent* event) {
    if (event->type() == static_cast<QEvent::Type>(BASS::kSplitEvent)) {
        m_record->cutMade(static_cast<BASS::SplitEvent*>(event)->song());
        return true;
    }
    return QMainWindow::event(event);
}

void AllSkylarkRadio::closeEvent(QCloseEvent* event) {
    if (m_presenter->isHiddenOnClose()) {
        event->ignore();
        hide();
        return;
    }
    if (m_quit->mustAsk() && !askWhileRecording()) {
        event->ignore();
        return;
    }
    event->accept();
    finishAndQuit();
}

void AllSkylarkRadio::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    m_navigation->setCompact(width() < kCompactWidth);
}

void AllSkylarkRadio::keyPressEvent(QKeyEvent* event) {
    // Text fields and buttons take the key before it comes here.
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
        m_play->toggle();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

void AllSkylarkRadio::showSettings() {
    if (findChild<SettingsDialog*>() != nullptr) {
        return;
    }
    auto* dialog = new SettingsDialog(m_services.settings.preferences(),
                                      m_services.languages,
                                      m_services.player.audioDevices(),
                                      this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &SettingsDialog::sig_applied, this, &AllSkylarkRadio::preferencesChanged);
    dialog->open();
}

void AllSkylarkRadio::preferencesChanged(const Preferences& before, const Preferences& after) {
    m_services.settings.changePreferences(before, after);
    m_presenter->setTrayOptions(m_services.settings.trayOptions());
    if (before.theme != after.theme) {
        WavelarkStyle::install(after.theme);
    }
    m_bar->meter().setLook(m_services.settings.peakMeter());
    if (before.outputDevice != after.outputDevice) {
        const QString fault = m_services.player.useOutputDevice(after.outputDevice);
        if (!fault.isEmpty()) {
            showMessage({Message::Kind::Error, fault, {}, {}});
        }
    }
    m_bar->setPauseButtonShown(m_services.settings.isPauseButtonShown());
    showRecording();
    checkChoices();
    emit sig_preferencesChanged();
}
