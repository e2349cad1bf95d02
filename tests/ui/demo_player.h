#pragma once

#include "ui/player.h"

#include <QStringList>

/// A player that does what a test tells it: commands are written down, and the test says what
/// comes of them. Stopping a recording finishes at once unless it is told to take its time.
class DemoPlayer final : public Player {
  public:
    QStringList calls; ///< "play http://...", "record split", ...
    BASS::RecordingOptions options;
    int volume = -1;
    bool isMuted = false;
    bool isSlowToFinish = false;
    BASS::SoundOptions sound;
    quint32 currentLevel = 0;
    QVector<float> currentSpectrum; ///< 20 Hz a step
    mutable int levelsAsked = 0;
    AudioDevices devices;
    QString deviceFault;
    bool canKeepLast = true;
    bool isWatched = true;

    void setWatched(bool isSeen) override { isWatched = isSeen; }

    void play(const BASS::StationRecord& station) override {
        calls.append(QStringLiteral("play ") + station.playUrl());
        endRecording();
        m_station = station;
        m_song = {};
        m_info = {};
        emit sig_stationChanged(m_station);
        setState(PlayState::Connecting);
    }
    void stop() override {
        calls.append(QStringLiteral("stop"));
        endRecording();
        m_song = {};
        setState(PlayState::Stopped);
    }
    void setPaused(bool isPaused) override {
        calls.append(isPaused ? QStringLiteral("pause station") : QStringLiteral("go on"));
        m_info.isPaused = isPaused;
        setState(isPaused ? PlayState::Paused : PlayState::Playing);
        emit sig_streamInfoChanged(m_info);
    }
    void jumpToLive() override {
        calls.append(QStringLiteral("live"));
        m_info.isPaused = false;
        m_info.behindLiveMs = 0;
        setState(PlayState::Playing);
        emit sig_streamInfoChanged(m_info);
    }
    [[nodiscard]] PlayState playState() const override { return m_state; }
    [[nodiscard]] const BASS::StationRecord& station() const override { return m_station; }
    [[nodiscard]] BASS::Song song() const override { return m_song; }
    [[nodiscard]] StreamInfo streamInfo() const override { return m_info; }

    void startRecording(const BASS::RecordingOptions& asked) override {
        calls.append(QStringLiteral("record"));
        options = asked;
        m_isRecording = true;
        emit sig_recordingChanged(true);
    }
    void stopRecording() override {
        calls.append(QStringLiteral("stop recording"));
        endRecording();
    }
    [[nodiscard]] bool isRecording() const override { return m_isRecording; }
    bool keepLastTitle(const BASS::RecordingOptions& asked) override {
        calls.append(QStringLiteral("keep last"));
        options = asked;
        return canKeepLast;
    }
    void setRecordingPaused(bool isPaused) override {
        calls.append(isPaused ? QStringLiteral("pause") : QStringLiteral("resume"));
        m_isPaused = isPaused;
        emit sig_recordingPaused(isPaused);
    }
    [[nodiscard]] bool isRecordingPaused() const override { return m_isPaused; }
    void setVolume(int percent) override { volume = percent; }
    void setMuted(bool muted) override { isMuted = muted; }
    void setSound(const BASS::SoundOptions& asked) override { sound = asked; }
    [[nodiscard]] quint32 level() const override {
        ++levelsAsked;
        return currentLevel;
    }
    [[nodiscard]] AudioDevices audioDevices() const override { return devices; }
    double spectrum(QVector<float>& amplitudes) const override {
        ++levelsAsked;
        amplitudes = currentSpectrum;
        return currentSpectrum.isEmpty() ? 0.0 : 20.0;
    }
    QString useOutputDevice(const QString& name) override {
        calls.append(QStringLiteral("device ") + name);
        return deviceFault;
    }

    // --- the script -----------------------------------------------------------------------------
    void setState(PlayState state) {
        m_state = state;
        emit sig_stateChanged(state);
    }
    void becomePlaying(const StreamInfo& info = {}) {
        m_info = info;
        setState(PlayState::Playing);
        emit sig_streamInfoChanged(info);
    }
    void sendTitle(const QString& track) {
        m_song = BASS::songFromTrack(track);
        emit sig_songChanged(m_song);
    }
    void failToConnect(const QString& text) {
        emit sig_connectFailed(text);
        setState(PlayState::Stopped);
    }
    void failRecording(const BASS::RecordingError& error) {
        m_isRecording = false;
        emit sig_recordingFailed(error);
        emit sig_recordingFinished();
        emit sig_recordingChanged(false);
    }
    void finishRecording() {
        m_isRecording = false;
        emit sig_recordingFinished();
        emit sig_recordingChanged(false);
    }

  private:
    void endRecording() {
        if (m_isRecording && !isSlowToFinish) {
            finishRecording();
        }
    }

    PlayState m_state = PlayState::Stopped;
    BASS::StationRecord m_station;
    BASS::Song m_song;
    StreamInfo m_info;
    bool m_isRecording = false;
    bool m_isPaused = false;
};
