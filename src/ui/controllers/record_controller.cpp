#include "ui/controllers/record_controller.h"

#include "ui/player.h"
#include "ui/state_text.h"
#include "ui/ui_settings.h"

#include <QFileInfo>
#include <QPointer>
#include <QUrl>

RecordController::RecordController(Player& player, const UiSettings& settings, QObject* parent)
    : QObject(parent), m_player(player), m_settings(settings) {
    connect(&player, &Player::sig_recordingChanged, this, &RecordController::recordingChanged);
    connect(&player, &Player::sig_recordingFinished, this, &RecordController::finished);
    connect(&player, &Player::sig_stateChanged, this, &RecordController::sig_changed);
    connect(&player, &Player::sig_recordingPaused, this, &RecordController::sig_changed);
    connect(&player, &Player::sig_fileOpened, this, &RecordController::fileOpened);
    connect(&player, &Player::sig_recordingProgress, this, &RecordController::progressed);
    connect(&player, &Player::sig_recordingFailed, this, &RecordController::failed);
}

bool RecordController::canStart() const {
    return isActive(m_player.playState()) && !isRecording() && !m_isAsking;
}

bool RecordController::isRecording() const {
    return m_player.isRecording() && !m_isEnding;
}

void RecordController::start(BASS::RecordMode mode, const QString& schedule) {
    if (!canStart() || mode == BASS::RecordMode::None) {
        return;
    }
    m_mode = mode;
    m_schedule = schedule;
    if (m_player.isRecording()) {
        m_isPending = true;
    } else {
        begin();
    }
}

BASS::RecordingOptions RecordController::options(BASS::RecordMode mode) const {
    BASS::StationRecord station = m_player.station();
    if (station.name.isEmpty()) { // folders are named after the station
        station.name = m_player.streamInfo().stationName;
    }
    if (station.name.isEmpty()) {
        station.name = QUrl(station.playUrl()).host();
    }
    return m_settings.recordingOptions(mode, station, m_schedule);
}

void RecordController::begin() {
    m_progress = {};
    const BASS::RecordingOptions wanted = options(m_mode);
    // a schedule has nobody in front of it
    const bool isUserThere = m_schedule.isEmpty() && m_boost.isOn && m_boost.ask;
    if (wanted.encoder == 0 || !isUserThere || !m_boost.isOn()) {
        start(wanted);
        return;
    }
    m_isAsking = true;
    emit sig_changed();
    const QString question =
        QStringLiteral("%1.\n\n%2")
            .arg(tr("Dynamic boost can sometimes distort recordings when encoding"),
                 tr("Do you wish to temporarily turn off dynamic boost?"));
    m_boost.ask(question, [self = QPointer<RecordController>(this), wanted](bool isYes) {
        if (self == nullptr || !std::exchange(self->m_isAsking, false)) {
            return;
        }
        if (isYes) {
            self->m_boost.setOn(false);
            self->m_isBoostOff = true;
        }
        if (self->canStart()) {
            self->start(wanted);
        } else {
            self->restoreBoost(); // the stream ended while the question stood
        }
    });
}

void RecordController::start(const BASS::RecordingOptions& options) {
    m_player.startRecording(options);
}

void RecordController::restoreBoost() {
    if (std::exchange(m_isBoostOff, false)) {
        m_boost.setOn(true);
    }
}

bool RecordController::canKeepLastTitle() const {
    return canStart() && !m_player.isRecording();
}

void RecordController::keepLastTitle() {
    if (!canKeepLastTitle()) {
        return;
    }
    m_schedule.clear();
    if (!m_player.keepLastTitle(options(BASS::RecordMode::SingleSong))) {
        emit sig_message({Message::Kind::Error,
                          tr("The recording buffer does not hold the last title from its "
                             "beginning. The buffer is switched on, and made larger, in the "
                             "settings of recordings."),
                          {},
                          {}});
    }
}

void RecordController::togglePaused() {
    if (isRecording()) {
        m_player.setRecordingPaused(!m_player.isRecordingPaused());
    }
}

bool RecordController::isPaused() const {
    return isRecording() && m_player.isRecordingPaused();
}

void RecordController::cutMade(const BASS::Song& song) {
    if (isRecording()) {
        m_progress.song = song;
        emit sig_changed();
    }
}

void RecordController::stop() {
    m_isPending = false;
    if (isRecording()) {
        leaveStream();
        m_player.stopRecording();
    }
}

void RecordController::leaveStream() {
    m_isPending = false;
    m_isEnding = m_player.isRecording();
    emit sig_changed();
}

void RecordController::toggle() {
    if (isRecording()) {
        stop();
    } else {
        start(m_settings.isRecordButtonSplitting() ? BASS::RecordMode::Split
                                                   : BASS::RecordMode::NoSplit);
    }
}

QString RecordController::folderToShow() const {
    return m_progress.path.isEmpty() ? m_settings.recordingFolder()
                                     : QFileInfo(m_progress.path).absolutePath();
}

void RecordController::recordingChanged(bool isRecording) {
    if (isRecording) {
        m_progress = {};
    }
    emit sig_changed();
}

void RecordController::finished() {
    m_isEnding = false;
    restoreBoost();
    emit sig_changed();
    if (m_isPending) {
        m_isPending = false;
        begin();
    }
}

void RecordController::fileOpened(const QString& path, const BASS::Song& song) {
    m_progress.path = path;
    m_progress.song = song;
    m_progress.fileBytes = 0;
    m_progress.fileDuration = {};
    emit sig_changed();
}

void RecordController::progressed(const BASS::RecordingProgress& progress) {
    m_progress = progress;
    emit sig_changed();
}

void RecordController::failed(const BASS::RecordingError& error) {
    const QString hint =
        tr("What was recorded before is kept. Check that the recording folder %1 can be written "
           "and has room, then try again.")
            .arg(m_settings.recordingFolder());
    emit sig_message({Message::Kind::Error,
                      QStringLiteral("%1. %2").arg(recordingErrorText(error), hint),
                      tr("Try again"),
                      [this] { start(m_mode, m_schedule); }});
    emit sig_changed();
}
