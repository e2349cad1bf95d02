#include "ui/controllers/record_controller.h"

#include "ui/player.h"
#include "ui/state_text.h"
#include "ui/ui_settings.h"

#include <QFileInfo>

RecordController::RecordController(Player& player, const UiSettings& settings, QObject* parent)
    : QObject(parent), m_player(player), m_settings(settings) {
    connect(&player, &Player::sig_recordingChanged, this, &RecordController::recordingChanged);
    connect(&player, &Player::sig_fileOpened, this, &RecordController::fileOpened);
    connect(&player, &Player::sig_recordingProgress, this, &RecordController::progressed);
    connect(&player, &Player::sig_recordingFailed, this, &RecordController::failed);
}

bool RecordController::canStart() const {
    return isActive(m_player.playState()) && !m_player.isRecording();
}

void RecordController::start(BASS::RecordMode mode) {
    if (!canStart() || mode == BASS::RecordMode::None) {
        return;
    }
    m_mode = mode;
    m_progress = {};
    m_player.startRecording(m_settings.recordingOptions(mode, m_player.station()));
}

void RecordController::stop() {
    if (m_player.isRecording()) {
        m_player.stopRecording();
    }
}

void RecordController::toggle() {
    if (isRecording()) {
        stop();
    } else {
        start(BASS::RecordMode::Split);
    }
}

bool RecordController::isRecording() const {
    return m_player.isRecording();
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
                      [this] { start(m_mode); }});
    emit sig_changed();
}
