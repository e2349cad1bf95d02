#include "ui/controllers/volume_controller.h"

#include "ui/player.h"
#include "ui/ui_settings.h"

#include <algorithm>

VolumeController::VolumeController(Player& player, UiSettings& settings, QObject* parent)
    : QObject(parent), m_player(player), m_settings(settings),
      m_volume(std::clamp(settings.volume(), 0, 100)) {
    m_player.setVolume(m_volume);
}

void VolumeController::setVolume(int percent) {
    const int volume = std::clamp(percent, 0, 100);
    if (m_isMuted && volume > 0) {
        m_isMuted = false;
        m_player.setMuted(false);
    } else if (volume == m_volume) {
        return;
    }
    m_volume = volume;
    m_player.setVolume(volume);
    m_settings.setVolume(volume);
    emit sig_changed();
}

void VolumeController::setMuted(bool isMuted) {
    if (isMuted != m_isMuted) {
        m_isMuted = isMuted;
        m_player.setMuted(isMuted);
        emit sig_changed();
    }
}
