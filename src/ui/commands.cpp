#include "ui/commands.h"

#include "ui/controllers/play_controller.h"
#include "ui/controllers/record_controller.h"
#include "ui/controllers/sound_controller.h"
#include "ui/controllers/volume_controller.h"
#include "ui/player.h"
#include "ui/state_text.h"
#include "ui/theme/icons.h"

#include <QActionGroup>

namespace {

constexpr int kVolumeStep = 5;

/// Every change of an icon has menus and buttons laid out again; most updates change none.
void setPicture(QAction& action, const QString& name, IconTone tone = IconTone::Text) {
    if (action.icon().name() != name)
        action.setIcon(icon(name, tone));
}

} // namespace

Commands::Commands(const Controllers& controllers,
                   const PageRegistry& registry,
                   const QVector<Language>& foundLanguages,
                   QObject* parent)
    : QObject(parent), m_controllers(controllers) {
    makePlay();
    makeRecord();
    makeSound();
    makeEffects();
    makeView(registry);
    makeThemes();
    makeLanguages(foundLanguages);
    toggleWindow = make(tr("&Hide the window"), {}, QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_H));
    settings = make(tr("&Settings…"), {}, QKeySequence(Qt::CTRL + Qt::Key_Comma));
    shortcuts = make(tr("&Keyboard shortcuts"), {}, QKeySequence(Qt::Key_F1));
    about = make(tr("&About Wavelark"), {}, {});
    connect(&controllers.player, &Player::sig_stateChanged, this, &Commands::update);
    connect(&controllers.player, &Player::sig_streamInfoChanged, this, &Commands::update);
    connect(&controllers.record, &RecordController::sig_changed, this, &Commands::update);
    connect(&controllers.volume, &VolumeController::sig_changed, this, &Commands::update);
    connect(&controllers.sound, &SoundController::sig_changed, this, &Commands::updateEffects);
    updateEffects();
    update();
}

QAction* Commands::make(const QString& text, const QString& iconName, const QKeySequence& keys) {
    auto* action = new QAction(text, this);
    if (!iconName.isEmpty()) {
        action->setIcon(icon(iconName));
    }
    action->setShortcut(keys);
    m_all.append(action);
    return action;
}

void Commands::makePlay() {
    openAddress =
        make(tr("&Open address…"), QStringLiteral("link"), QKeySequence(Qt::CTRL + Qt::Key_L));
    playStop = make(tr("&Play"), QStringLiteral("play"), QKeySequence(Qt::CTRL + Qt::Key_P));
    playLast = make(tr("Play &last station"),
                    QStringLiteral("history"),
                    QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_P));
    playDevice = make(tr("Play the recording &device"), {}, {});
    pause = make(
        tr("P&ause"), QStringLiteral("pause"), QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_Space));
    goLive = make(
        tr("&Go to live"), QStringLiteral("live"), QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_L));
    quit = make(tr("&Quit"), {}, QKeySequence(Qt::CTRL + Qt::Key_Q));
    connect(playStop, &QAction::triggered, &m_controllers.play, &PlayController::toggle);
    connect(pause, &QAction::triggered, this, [this] {
        m_controllers.player.setPaused(!m_controllers.player.streamInfo().isPaused);
    });
    connect(goLive, &QAction::triggered, &m_controllers.player, &Player::jumpToLive);
    connect(playLast, &QAction::triggered, &m_controllers.play, &PlayController::playLast);
    connect(
        playDevice, &QAction::triggered, &m_controllers.play, &PlayController::playRecordingDevice);
}

void Commands::makeRecord() {
    RecordController& record = m_controllers.record;
    recordToggle =
        make(tr("&Record"), QStringLiteral("record"), QKeySequence(Qt::CTRL + Qt::Key_R));
    recordSplit = make(tr("Record with splitting"), {}, {});
    recordNoSplit =
        make(tr("Record without splitting"), {}, QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_R));
    recordSingleSong =
        make(tr("Start recording single song"), {}, QKeySequence(Qt::CTRL + Qt::ALT + Qt::Key_R));
    recordKeepLast = make(tr("Keep last title"), {}, QKeySequence(Qt::CTRL + Qt::ALT + Qt::Key_K));
    recordPause = make(tr("Pause recording"), {}, QKeySequence(Qt::CTRL + Qt::ALT + Qt::Key_P));
    recordStop = make(tr("&Stop recording"), QStringLiteral("record-stop"), {});
    openRecordingFolder = make(tr("Open recording folder"),
                               QStringLiteral("folder"),
                               QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_O));
    connect(recordToggle, &QAction::triggered, &record, &RecordController::toggle);
    connect(recordStop, &QAction::triggered, &record, &RecordController::stop);
    connect(recordKeepLast, &QAction::triggered, &record, &RecordController::keepLastTitle);
    connect(recordPause, &QAction::triggered, &record, &RecordController::togglePaused);
    const auto starts = [this, &record](QAction* action, BASS::RecordMode mode) {
        connect(action, &QAction::triggered, this, [&record, mode] { record.start(mode); });
    };
    starts(recordSplit, BASS::RecordMode::Split);
    starts(recordNoSplit, BASS::RecordMode::NoSplit);
    starts(recordSingleSong, BASS::RecordMode::SingleSong);
}

void Commands::makeSound() {
    VolumeController& volume = m_controllers.volume;
    mute = make(tr("&Mute"), QStringLiteral("volume"), QKeySequence(Qt::CTRL + Qt::Key_M));
    mute->setCheckable(true);
    volumeUp = make(tr("&Louder"), {}, QKeySequence(Qt::CTRL + Qt::Key_Up));
    volumeDown = make(tr("&Quieter"), {}, QKeySequence(Qt::CTRL + Qt::Key_Down));
    connect(mute, &QAction::triggered, &volume, &VolumeController::toggleMuted);
    connect(volumeUp, &QAction::triggered, this, [&volume] { volume.changeVolume(kVolumeStep); });
    connect(
        volumeDown, &QAction::triggered, this, [&volume] { volume.changeVolume(-kVolumeStep); });
}

void Commands::makeEffects() {
    SoundController& controller = m_controllers.sound;
    sound = make(tr("&Equalizer and sound…"),
                 {},
                 QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_S)); // text fields take Ctrl+E
    auto* group = new QActionGroup(this);
    const QPair<QString, BASS::DynamicBoost> choices[] = {
        {tr("&Off"), BASS::DynamicBoost::Off},
        {tr("&Low"), BASS::DynamicBoost::Low},
        {tr("&Medium"), BASS::DynamicBoost::Medium},
        {tr("&High"), BASS::DynamicBoost::High},
        {tr("&Custom"), BASS::DynamicBoost::Custom},
    };
    for (const auto& choice : choices) {
        QAction* action = make(choice.first, {}, {});
        action->setCheckable(true);
        action->setData(static_cast<int>(choice.second));
        group->addAction(action);
        boosts.append(action);
        connect(action, &QAction::triggered, this, [&controller, boost = choice.second] {
            controller.set(&BASS::SoundOptions::boost, boost);
        });
    }
    autoVolume = make(tr("&All stations equally loud"), {}, {});
    compressor = make(tr("E&ven out loud and quiet"), {}, {});
    mono = make(tr("M&ono"), {}, {});
    swapChannels = make(tr("&Swap left and right"), {}, {});
    const QPair<QAction*, bool BASS::SoundOptions::*> switches[] = {
        {autoVolume, &BASS::SoundOptions::isAutoVolume},
        {compressor, &BASS::SoundOptions::isCompressorOn},
        {mono, &BASS::SoundOptions::isMono},
        {swapChannels, &BASS::SoundOptions::isSwapped},
    };
    for (const auto& [action, part] : switches) {
        action->setCheckable(true);
        connect(action, &QAction::triggered, &controller, [&controller, part = part](bool isOn) {
            controller.set(part, isOn);
        });
    }
}

void Commands::updateEffects() {
    const BASS::SoundOptions& options = m_controllers.sound.options();
    for (QAction* boost : boosts) {
        boost->setChecked(boost->data().toInt() == static_cast<int>(options.boost));
    }
    autoVolume->setChecked(options.isAutoVolume);
    compressor->setChecked(options.isCompressorOn);
    compressor->setEnabled(options.boost == BASS::DynamicBoost::Off);
    mono->setChecked(options.isMono);
    swapChannels->setChecked(options.isSwapped);
}

void Commands::makeView(const PageRegistry& registry) {
    auto* pageGroup = new QActionGroup(this);
    int number = 0;
    for (const PageEntry& entry : registry) {
        ++number;
        const QKeySequence keys =
            number < 10 ? QKeySequence(Qt::CTRL + Qt::Key_0 + number) : QKeySequence();
        QAction* action = make(entry.title, entry.iconName, keys);
        action->setCheckable(true);
        pageGroup->addAction(action);
        pages.append(action);
    }
    filter = make(tr("&Filter the list"), QStringLiteral("search"), QKeySequence::Find);
    closeMessage = make(tr("&Close the message"), {}, QKeySequence(Qt::Key_Escape));
}

void Commands::makeThemes() {
    auto* themeGroup = new QActionGroup(this);
    const QPair<QString, ThemeChoice> choices[] = {{tr("As the &system"), ThemeChoice::System},
                                                   {tr("&Light"), ThemeChoice::Light},
                                                   {tr("&Dark"), ThemeChoice::Dark}};
    for (const auto& choice : choices) {
        QAction* action = make(choice.first, {}, {});
        action->setCheckable(true);
        action->setData(static_cast<int>(choice.second));
        themeGroup->addAction(action);
        themes.append(action);
    }
}

void Commands::makeLanguages(const QVector<Language>& foundLanguages) {
    auto* group = new QActionGroup(this);
    for (const Language& language : foundLanguages) {
        QAction* action = make(language.name, {}, {});
        action->setCheckable(true);
        action->setData(language.file);
        group->addAction(action);
        languages.append(action);
    }
}

void Commands::update() {
    const bool isActiveNow = isActive(m_controllers.player.playState());
    playStop->setText(isActiveNow ? tr("&Stop") : tr("&Play"));
    setPicture(*playStop, isActiveNow ? QStringLiteral("stop") : QStringLiteral("play"));
    const StreamInfo stream = m_controllers.player.streamInfo();
    pause->setText(stream.isPaused ? tr("&Go on") : tr("P&ause"));
    setPicture(*pause, stream.isPaused ? QStringLiteral("play") : QStringLiteral("pause"));
    const PlayState state = m_controllers.player.playState();
    pause->setEnabled(state == PlayState::Playing || state == PlayState::Paused);
    goLive->setEnabled(isActiveNow && stream.behindLiveMs > 0);
    const bool isRecording = m_controllers.record.isRecording();
    const bool canStart = m_controllers.record.canStart();
    recordToggle->setText(isRecording ? tr("&Stop recording") : tr("&Record"));
    setPicture(*recordToggle,
               isRecording ? QStringLiteral("record-stop") : QStringLiteral("record"),
               IconTone::Recording);
    recordToggle->setEnabled(isRecording || canStart);
    for (QAction* action : {recordSplit, recordNoSplit, recordSingleSong}) {
        action->setEnabled(canStart);
    }
    recordStop->setEnabled(isRecording);
    recordKeepLast->setEnabled(m_controllers.record.canKeepLastTitle());
    const bool isPaused = m_controllers.record.isPaused();
    recordPause->setEnabled(isRecording);
    recordPause->setText(isPaused ? tr("Resume recording") : tr("Pause recording"));
    const bool isMuted = m_controllers.volume.isMuted();
    mute->setChecked(isMuted);
    mute->setText(isMuted ? tr("Un&mute") : tr("&Mute"));
    setPicture(*mute, isMuted ? QStringLiteral("muted") : QStringLiteral("volume"));
}
