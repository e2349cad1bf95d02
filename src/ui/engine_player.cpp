#include "ui/engine_player.h"

EnginePlayer::EnginePlayer(AppStream& engine, std::function<EngineSettings()> settings)
    : m_engine(engine), m_settings(std::move(settings)) {
    connect(&engine, &AppStream::sig_stateChanged, this, &Player::sig_stateChanged);
    connect(&engine, &AppStream::sig_stationChanged, this, &Player::sig_stationChanged);
    connect(&engine, &AppStream::sig_songChanged, this, &Player::sig_songChanged);
    connect(&engine, &AppStream::sig_streamInfoChanged, this, &Player::sig_streamInfoChanged);
    connect(&engine, &AppStream::sig_statusLine, this, &Player::sig_statusLine);
    connect(&engine, &AppStream::sig_logLine, this, &Player::sig_logLine);
    connect(&engine, &AppStream::sig_connectFailed, this, &Player::sig_connectFailed);
    connect(&engine, &AppStream::sig_recordingChanged, this, &Player::sig_recordingChanged);
    connect(&engine, &AppStream::sig_recordingPaused, this, &Player::sig_recordingPaused);
    connect(&engine.originals(),
            &BASS::StreamRecorder::sig_fileFinished,
            this,
            &Player::sig_fileFinished);
    const BASS::StreamRecorder& recorder = engine.recorder();
    using Recorder = BASS::StreamRecorder;
    connect(&recorder, &Recorder::sig_fileOpened, this, &Player::sig_fileOpened);
    connect(&recorder, &Recorder::sig_fileFinished, this, &Player::sig_fileFinished);
    connect(&recorder, &Recorder::sig_progress, this, &Player::sig_recordingProgress);
    connect(&recorder, &Recorder::sig_failed, this, &Player::sig_recordingFailed);
    connect(&recorder, &Recorder::sig_finished, this, &Player::sig_recordingFinished);
}

void EnginePlayer::play(const BASS::StationRecord& station) {
    m_engine.setSettings(m_settings());
    m_engine.play(station);
}

double EnginePlayer::spectrum(QVector<float>& amplitudes) const {
    amplitudes.resize(BASS::AudioLibrary::kSpectrumBins);
    return m_engine.ChannelGetSpectrum(amplitudes.data());
}

QString EnginePlayer::useOutputDevice(const QString& name) {
    return m_engine.SelectDevice(name) ? QString() : m_engine.lastError();
}

void EnginePlayer::startRecording(const BASS::RecordingOptions& options) {
    m_engine.startRecording(options);
}
