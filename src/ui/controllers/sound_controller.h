#pragma once

#include "engine/sound_options.h"

#include <QObject>

class Player;
class UiSettings;

/// The one place that knows how the sound is shaped: the general way, or the current station's own.
///
/// *Thread*: GUI. *Owner*: the main window. The objects given outlive it.
class SoundController final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SoundController)

  public:
    /// Takes the settings, and tells the player; again with every station.
    SoundController(Player& player, UiSettings& settings, QObject* parent = nullptr);

    [[nodiscard]] const BASS::SoundOptions& options() const { return m_options; }
    /// True where a station is there that could have an equalizer of its own.
    [[nodiscard]] bool hasStation() const;
    /// In force at once, and kept.
    void setOptions(const BASS::SoundOptions& options);

    /// One part of the options, `&BASS::SoundOptions::isMono` for example.
    template <typename Value>
    void set(Value BASS::SoundOptions::*part, Value value) {
        BASS::SoundOptions options = m_options;
        options.*part = value;
        setOptions(options);
    }
    /// With true the current equalizer becomes the station's own; with false the general one is in
    /// force again.
    void setEqualizerOfStation(bool isOwn);

  signals:
    void sig_changed();

  private:
    void takeSettings();

    Player& m_player;
    UiSettings& m_settings;
    BASS::SoundOptions m_options;
};
