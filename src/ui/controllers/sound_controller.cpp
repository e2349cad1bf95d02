#include "ui/controllers/sound_controller.h"

#include "ui/player.h"
#include "ui/ui_settings.h"

SoundController::SoundController(Player& player, UiSettings& settings, QObject* parent)
    : QObject(parent), m_player(player), m_settings(settings) {
    connect(&player, &Player::sig_stationChanged, this, &SoundController::takeSettings);
    takeSettings();
}

bool SoundController::hasStation() const {
    return !m_player.station().playUrl().isEmpty();
}

void SoundController::takeSettings() {
    m_options = m_settings.sound(m_player.station());
    m_player.setSound(m_options);
    emit sig_changed();
}

void SoundController::setOptions(const BASS::SoundOptions& options) {
    m_options = options;
    m_options.isEqualizerOfStation = options.isEqualizerOfStation && hasStation();
    m_settings.setSound(m_player.station(), m_options);
    m_player.setSound(m_options);
    emit sig_changed();
}

void SoundController::setEqualizerOfStation(bool isOwn) {
    if (isOwn) {
        set(&BASS::SoundOptions::isEqualizerOfStation, true);
        return;
    }
    m_settings.forgetStationEqualizer(m_player.station());
    takeSettings();
}
