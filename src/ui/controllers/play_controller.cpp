#include "ui/controllers/play_controller.h"

#include "base/clock.h"
#include "stations/played_stations.h"
#include "ui/controllers/address_input.h"
#include "ui/player.h"
#include "ui/state_text.h"

PlayController::PlayController(Player& player,
                               BASS::PlayedStations& played,
                               const Clock& clock,
                               QObject* parent)
    : QObject(parent), m_player(player), m_played(played), m_clock(clock) {
    connect(&player, &Player::sig_stateChanged, this, &PlayController::stateChanged);
    connect(&player, &Player::sig_streamInfoChanged, this, &PlayController::streamInfoChanged);
    connect(&player, &Player::sig_connectFailed, this, &PlayController::connectFailed);
}

void PlayController::play(const BASS::StationRecord& station) {
    m_isListed = false;
    m_playingSince = std::chrono::milliseconds(-1);
    emit sig_leavingStream();
    m_player.play(station);
}

void PlayController::requestPlay(const BASS::StationRecord& station) {
    if (!m_player.isRecording()) {
        play(station);
        return;
    }
    emit sig_message({Message::Kind::Information,
                      tr("%1 is being recorded. Playing another station ends the recording; what "
                         "has been recorded is kept.")
                          .arg(m_player.station().displayName()),
                      tr("Stop recording and play"),
                      [this, station] { play(station); }});
}

bool PlayController::playAddress(const QString& input) {
    const Result<QString> address = addressFromInput(input);
    if (!address) {
        emit sig_message({Message::Kind::Error, address.error(), {}, {}});
        return false;
    }
    requestPlay(stationForAddress(address.value()));
    return true;
}

BASS::StationRecord PlayController::stationForAddress(const QString& address,
                                                      const QString& name) const {
    BASS::StationRecord station = BASS::stationFromAddress(address, name);
    const int known = m_played.indexOf(station);
    if (known < 0) {
        return station;
    }
    station = m_played.stations().at(known);
    if (station.name.isEmpty()) {
        station.name = name;
    }
    return station;
}

void PlayController::stop() {
    emit sig_leavingStream();
    m_player.stop();
}

void PlayController::toggle() {
    if (isActive(m_player.playState())) {
        stop();
    } else {
        playLast();
    }
}

BASS::StationRecord PlayController::lastStation() const {
    if (!m_player.station().playUrl().isEmpty()) {
        return m_player.station();
    }
    return m_played.stations().isEmpty() ? BASS::StationRecord{} : m_played.stations().front();
}

bool PlayController::playLast() {
    const BASS::StationRecord station = lastStation();
    if (station.playUrl().isEmpty()) {
        emit sig_message({Message::Kind::Information,
                          tr("No station has been played yet. Type or paste the address of one "
                             "above, and press Enter."),
                          {},
                          {}});
        return false;
    }
    requestPlay(station);
    return true;
}

BASS::StationRecord PlayController::recordingDevice(const QString& name) {
    return BASS::stationFromAddress(QStringLiteral("RecordingDevice"),
                                    name.isEmpty() ? tr("Recording device") : name);
}

void PlayController::playRecordingDevice() {
    requestPlay(recordingDevice());
}

std::chrono::milliseconds PlayController::elapsed() const {
    return m_playingSince.count() < 0 ? std::chrono::milliseconds(0)
                                      : m_clock.steady() - m_playingSince;
}

void PlayController::stateChanged(PlayState state) {
    if (state == PlayState::Stopped) {
        m_playingSince = std::chrono::milliseconds(-1);
    }
    if (state != PlayState::Playing) {
        return;
    }
    if (m_playingSince.count() < 0) {
        m_playingSince = m_clock.steady();
    }
    if (!m_isListed) {
        m_isListed = true;
        BASS::StationRecord station = m_player.station();
        station.lastPlayed = m_clock.now();
        if (station.name.isEmpty()) {
            station.name = m_player.streamInfo().stationName;
        }
        m_played.add(station);
    }
}

// A station that was started by its address alone gets its name from the stream.
void PlayController::streamInfoChanged(const StreamInfo& info) {
    const int index = m_isListed ? m_played.indexOf(m_player.station()) : -1;
    if (index < 0) {
        return;
    }
    BASS::StationRecord station = m_played.stations().at(index);
    const QString name = station.name.isEmpty() ? info.stationName : station.name;
    const QString genre = station.genre.isEmpty() ? info.genre : station.genre;
    const int bitrate = info.bitrate > 0 ? info.bitrate : station.bitrate;
    if (name != station.name || genre != station.genre || bitrate != station.bitrate) {
        station.name = name;
        station.genre = genre;
        station.bitrate = bitrate;
        m_played.update(station);
    }
}

void PlayController::connectFailed(const QString& text) {
    const BASS::StationRecord station = m_player.station();
    emit sig_message(
        {Message::Kind::Error, text, tr("Try again"), [this, station] { play(station); }});
}
