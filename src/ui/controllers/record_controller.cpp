#include "ui/controllers/record_controller.h"

#include "ui/player.h"
#include "ui/state_text.h"
#include "ui/ui_settings.h"

#include <QFileInfo>
#include <QUrl>

RecordController::RecordController(Player& player, const UiSettings& settings, QObject* parent)
    : QObject(parent), m_player(player), m_settings(settings) {
    connect(&player, &Player::sig_recordingChanged, this, &RecordController::recordingChanged);
    connect(&player, &Player::sig_recordingFinished, this, &RecordController::finished);
    connect(&player, &Player::sig_stateChanged, this, &RecordController::sig_changed);
    connect(&player, &Player::sig_fileOpened, this, &RecordController::fileOpened);
    connect(&player, &Player::sig_recordingProgress, this, &RecordController::progressed);
    connect(&player, &Player::sig_recordingFailed, this, &RecordController::failed);
}

bool RecordController::canStart() const {
    return isActive(m_player.playState()) && !isRecording();
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

void RecordController::begin() {
    m_progress = {};
    BASS::StationRecord station = m_player.station();
    if (station.name.isEmpty()) { // folders are named after the station
        station.name = m_player.streamInfo().stationName;
    }
    if (station.name.isEmpty()) {
        station.name = QUrl(station.playUrl()).host();
    }
    m_player.startRecording(m_settings.recordingOptions(m_mode, station, m_schedule));
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
        start(BASS::RecordMode::Split);
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
