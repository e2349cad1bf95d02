#pragma once

#include "engine/app_stream.h"
#include "ui/player.h"

#include <functional>

/// The engine behind the window's Player.
///
/// *Thread*: GUI. *Owner*: main(); the engine outlives it.
class EnginePlayer final : public Player {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(EnginePlayer)

  public:
    /// `settings` is asked before every connect, so that changed settings take effect with the next
    /// station.
    EnginePlayer(AppStream& engine, std::function<EngineSettings()> settings);

    void play(const BASS::StationRecord& station) override;
    void stop() override { m_engine.stop(); }
    void setPaused(bool isPaused) override { m_engine.setPaused(isPaused); }
    void jumpToLive() override { m_engine.jumpToLive(); }
    void setWatched(bool isWatched) override { m_engine.setWatched(isWatched); }
    [[nodiscard]] PlayState playState() const override { return m_engine.playState(); }
    [[nodiscard]] const BASS::StationRecord& station() const override { return m_engine.station(); }
    [[nodiscard]] BASS::Song song() const override { return m_engine.song(); }
    [[nodiscard]] StreamInfo streamInfo() const override { return m_engine.streamInfo(); }
    void startRecording(const BASS::RecordingOptions& options) override;
    void stopRecording() override { m_engine.stopRecording(); }
    [[nodiscard]] bool isRecording() const override { return m_engine.isRecording(); }
    bool keepLastTitle(const BASS::RecordingOptions& options) override {
        return m_engine.keepLastTitle(options);
    }
    void setRecordingPaused(bool isPaused) override { m_engine.setRecordingPaused(isPaused); }
    [[nodiscard]] bool isRecordingPaused() const override { return m_engine.isRecordingPaused(); }
    void setVolume(int percent) override { m_engine.SetVolume(percent); }
    void setMuted(bool isMuted) override { m_engine.SetVolumeMute(isMuted); }
    void setSound(const BASS::SoundOptions& sound) override { m_engine.setSoundOptions(sound); }
    double spectrum(QVector<float>& amplitudes) const override;
    [[nodiscard]] quint32 level() const override { return m_engine.ChannelGetLevel(); }
    [[nodiscard]] AudioDevices audioDevices() const override {
        return {m_engine.outputDevices(), m_engine.recordingDevices()};
    }
    QString useOutputDevice(const QString& name) override;

  private:
    AppStream& m_engine;
    std::function<EngineSettings()> m_settings;
};
