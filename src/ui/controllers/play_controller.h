#pragma once

#include "engine/engine_types.h"
#include "stations/station.h"
#include "ui/message.h"

#include <QObject>

class Clock;
class Player;

namespace BASS {
class PlayedStations;
}

/// Carries out everything that starts and stops a station, whoever asks: window, tray, command
/// line.
///
/// *Thread*: GUI. *Owner*: the main window. The objects given outlive it.
class PlayController final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PlayController)

  public:
    PlayController(Player& player,
                   BASS::PlayedStations& played,
                   const Clock& clock,
                   QObject* parent = nullptr);

    /// Plays it in place of what plays now; a recording ends.
    void play(const BASS::StationRecord& station);
    /// As play(), but a running recording is ended only after sig_message has asked.
    void requestPlay(const BASS::StationRecord& station);
    /// What a person typed; a known station's name and settings go with its address. False: it is
    /// no address, and sig_message has said so.
    bool playAddress(const QString& input);
    /// The station of this address: the one that was played before, under its own name, else a new
    /// one.
    [[nodiscard]] BASS::StationRecord stationForAddress(const QString& address,
                                                        const QString& name = {}) const;
    void stop();
    /// Stops what plays or connects, else plays the last station.
    void toggle();
    /// Plays what the recording device hears.
    void playRecordingDevice();
    [[nodiscard]] static BASS::StationRecord recordingDevice(const QString& name = {});
    /// False, and sig_message says so: nothing has been played yet.
    bool playLast();
    /// The station played last, without address where there is none.
    [[nodiscard]] BASS::StationRecord lastStation() const;

    /// How long the station has been heard, without the times of connecting; 0 where stopped.
    [[nodiscard]] std::chrono::milliseconds elapsed() const;

  signals:
    /// play() or stop() is about to end the recording of the stream that is left.
    void sig_leavingStream();
    void sig_message(const Message& message);

  private:
    void stateChanged(PlayState state);
    void streamInfoChanged(const StreamInfo& info);
    void connectFailed(const QString& text);

    Player& m_player;
    BASS::PlayedStations& m_played;
    const Clock& m_clock;
    std::chrono::milliseconds m_playingSince{-1};
    bool m_isListed = false; ///< the station that plays stands in front of the played ones
};
