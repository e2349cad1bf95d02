#pragma once

#include "engine/engine_types.h"
#include "engine/stream.h"
#include "recording/stream_recorder.h"

/// The application's engine: one station at a time, its recording, and what the window shows of
/// both.
///
/// *Thread*: GUI. Library and worker threads reach it by posted events only.
/// *Owner*: main(); the library given to it must outlive it.
/// *Life*: initialise(), then play() and stop() in any order. Destroying it while it records
/// finishes the open file.
class AppStream : public BASS::Stream {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AppStream)

  public:
    AppStream(std::shared_ptr<BASS::AudioLibrary> library, QObject* parent = nullptr);
    ~AppStream() override;

    /// Connects to a station, ending what plays; sig_stateChanged tells how it goes. Returns at
    /// once.
    void play(const BASS::StationRecord& station);
    /// Fades out and disconnects; ends a connect under way within 200 ms; ends a recording.
    void stop();

    [[nodiscard]] PlayState playState() const { return m_state; }
    [[nodiscard]] const BASS::StationRecord& station() const { return m_station; }
    [[nodiscard]] BASS::Song song() const;
    [[nodiscard]] StreamInfo streamInfo() const;

    /// Starts when the station plays or as soon as its first byte arrives, also over reconnects.
    void startRecording(const BASS::RecordingOptions& options);
    void stopRecording();
    [[nodiscard]] bool isRecording() const;
    [[nodiscard]] BASS::StreamRecorder& recorder() { return m_recorder; }

  signals:
    void sig_stateChanged(PlayState state);
    void sig_stationChanged(const BASS::StationRecord& station);
    /// The song that is heard now.
    void sig_songChanged(const BASS::Song& song);
    void sig_streamInfoChanged(const StreamInfo& info);
    /// A line for the status bar; important ones stay until the next important one.
    void sig_statusLine(const QString& text, bool isImportant);
    void sig_logLine(const QString& text, bool isError);
    /// The connect has failed for good; the text says why and what can be done.
    void sig_connectFailed(const QString& message);
    void sig_recordingChanged(bool isRecording);

  private:
    PlayState m_state = PlayState::Stopped;
    BASS::StationRecord m_station;
    BASS::StreamRecorder m_recorder;
};
