#pragma once

#include "engine/engine_types.h"
#include "engine/sound_options.h"
#include "recording/recording_types.h"
#include "stations/station.h"
#include "ui/audio_devices.h"

#include <QObject>
#include <QVector>

/// The engine as the window sees it: everything that views and controllers may ask of it, and
/// nothing else. EnginePlayer puts the engine behind it; tests put a script behind it.
///
/// *Thread*: GUI. *Owner*: main(). *Life*: outlives window and controllers.
class Player : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Player)

  public:
    using QObject::QObject;

    /// Connects to a station, ending what plays. Returns at once.
    virtual void play(const BASS::StationRecord& station) = 0;
    /// Ends playing, a connect under way, and a recording.
    virtual void stop() = 0;

    /// What a paused station sends is kept for later; see streamInfo() for how far one is behind.
    virtual void setPaused(bool isPaused) = 0;
    /// Goes on with what the station sends now.
    virtual void jumpToLive() = 0;

    /// False: nobody sees the window, and what changes all the time is told once a minute only.
    virtual void setWatched(bool /*isWatched*/) {}

    [[nodiscard]] virtual PlayState playState() const = 0;
    [[nodiscard]] virtual const BASS::StationRecord& station() const = 0;
    [[nodiscard]] virtual BASS::Song song() const = 0;
    [[nodiscard]] virtual StreamInfo streamInfo() const = 0;

    /// Starts now, or with the first byte of a station that is being connected.
    virtual void startRecording(const BASS::RecordingOptions& options) = 0;
    /// The open file is completed; sig_recordingFinished follows.
    virtual void stopRecording() = 0;
    [[nodiscard]] virtual bool isRecording() const = 0;
    /// Writes the title before the one that is heard to a file. False: the recording buffer does
    /// not hold it.
    virtual bool keepLastTitle(const BASS::RecordingOptions& options) = 0;
    /// Nothing is written until it is resumed.
    virtual void setRecordingPaused(bool isPaused) = 0;
    [[nodiscard]] virtual bool isRecordingPaused() const = 0;

    /// 0 to 100.
    virtual void setVolume(int percent) = 0;
    virtual void setMuted(bool isMuted) = 0;

    /// In force at once, and for every station to come.
    virtual void setSound(const BASS::SoundOptions& sound) = 0;
    /// Peaks of the last moments before the volume: left in the low, right in the high 16 bits, 0
    /// to 32768.
    [[nodiscard]] virtual quint32 level() const = 0;
    /// Amplitudes of the last moments by frequency, 0 to 1; returns the step from one to the next
    /// in Hz, 0: none.
    virtual double spectrum(QVector<float>& amplitudes) const = 0;
    [[nodiscard]] virtual AudioDevices audioDevices() const = 0;
    /// Empty: the system's default. An empty answer: done; else what to tell the user.
    virtual QString useOutputDevice(const QString& name) = 0;

  signals:
    void sig_stateChanged(PlayState state);
    void sig_stationChanged(const BASS::StationRecord& station);
    void sig_songChanged(const BASS::Song& song);
    void sig_streamInfoChanged(const StreamInfo& info);
    /// Important lines stay until the next important one.
    void sig_statusLine(const QString& text, bool isImportant);
    void sig_logLine(const QString& text, bool isError);
    /// The connect has failed for good; the text says why and what can be done.
    void sig_connectFailed(const QString& message);

    void sig_recordingChanged(bool isRecording);
    void sig_recordingPaused(bool isPaused);
    void sig_fileOpened(const QString& path, const BASS::Song& song);
    void sig_fileFinished(const BASS::RecordedFile& file);
    void sig_recordingProgress(const BASS::RecordingProgress& progress);
    /// The recording has ended by itself; what was written is safe.
    void sig_recordingFailed(const BASS::RecordingError& error);
    void sig_recordingFinished();
};
