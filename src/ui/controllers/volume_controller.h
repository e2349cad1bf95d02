#pragma once

#include <QObject>

class Player;
class UiSettings;

/// The one place that knows volume and mute.
///
/// *Thread*: GUI. *Owner*: the main window. The objects given outlive it.
class VolumeController final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VolumeController)

  public:
    /// Takes the volume of the settings, and tells the player.
    VolumeController(Player& player, UiSettings& settings, QObject* parent = nullptr);

    /// 0 to 100.
    [[nodiscard]] int volume() const { return m_volume; }
    [[nodiscard]] bool isMuted() const { return m_isMuted; }

    /// Out of range values are clamped. A volume above 0 ends the mute.
    void setVolume(int percent);
    void changeVolume(int difference) { setVolume(m_volume + difference); }
    void setMuted(bool isMuted);
    void toggleMuted() { setMuted(!m_isMuted); }

  signals:
    void sig_changed();

  private:
    Player& m_player;
    UiSettings& m_settings;
    int m_volume;
    bool m_isMuted = false;
};
