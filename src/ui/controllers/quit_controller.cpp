#include "ui/controllers/quit_controller.h"

#include "ui/controllers/record_controller.h"
#include "ui/player.h"
#include "ui/ui_settings.h"

#include <QTimer>

#include <chrono>

namespace {

/// A disk that hangs must not keep the program alive for ever.
constexpr std::chrono::seconds kLongestFinish{15};

} // namespace

QuitController::QuitController(const Parts& parts, QObject* parent)
    : QObject(parent), m_parts(parts) {}

bool QuitController::mustAsk() const {
    return !m_isFinishing && m_parts.record.isRecording() &&
           m_parts.settings.askOnExitIfRecording();
}

void QuitController::finish() {
    if (m_isFinishing) {
        return;
    }
    m_isFinishing = true;
    m_parts.record.leaveStream();
    if (!m_parts.player.isRecording()) { // true as well while a stopped recording is completed
        emit sig_finished();
        return;
    }
    connect(&m_parts.player, &Player::sig_recordingFinished, this, &QuitController::sig_finished);
    QTimer::singleShot(kLongestFinish, this, &QuitController::sig_finished);
    m_parts.player.stopRecording();
}
