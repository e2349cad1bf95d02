#pragma once

#include "engine/channel_encoder.h"
#include "engine/engine_types.h"
#include "engine/stream.h"
#include "engine/time_shift.h"
#include "recording/stream_recorder.h"

#include <QHash>
#include <QPointer>
#include <QTimer>

#include <atomic>
#include <vector>

/// The application's engine: one station at a time, its recording, and what the window shows of
/// both.
///
/// *Thread*: GUI. Library and worker threads reach it by posted events only; what they hand over
/// (bytes and titles) goes straight to the recorder. *Owner*: main(); the library given to it must
/// outlive it. *Life*: InitLibrary(), then play() and stop() in any order. Destroying it while it
/// records finishes the open file.
class AppStream : public BASS::Stream {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AppStream)

  public:
    explicit AppStream(std::shared_ptr<BASS::AudioLibrary> library, QObject* parent = nullptr);
    ~AppStream() override;

    /// Connects to a station, ending what plays; sig_stateChanged tells how it goes. Returns at
    /// once.
    void play(const BASS::StationRecord& station);
    /// Fades out and disconnects; ends a connect under way within 200 ms; ends a recording.
    void stop();

    /// A paused station keeps on being received, up to 32 MB (half an hour of 128 kbit/s); what
    /// came first is lost then. Playing goes on where it was paused. Nothing happens where nothing
    /// plays.
    void setPaused(bool isPaused);
    [[nodiscard]] bool isPaused() const { return m_shift.isPaused(); }
    [[nodiscard]] bool canPause() const;
    /// How far a live station is heard behind what it sends; 0: live.
    [[nodiscard]] std::chrono::milliseconds behindLive() const;
    /// Goes on with what the station sends now; also out of a pause.
    void jumpToLive();

    /// False: nobody looks. sig_streamInfoChanged and the progress of recordings then come every
    /// minute only, which spares a computer that records for days.
    void setWatched(bool isWatched);

    [[nodiscard]] PlayState playState() const { return m_state; }
    [[nodiscard]] const BASS::StationRecord& station() const { return m_station; }
    /// The song that is heard now.
    [[nodiscard]] BASS::Song song() const;
    [[nodiscard]] StreamInfo streamInfo();

    /// Starts when the station plays or as soon as its first byte arrives; goes on over reconnects.
    virtual void startRecording(const BASS::RecordingOptions& options);
    /// The title before the one that is heard, out of the recording buffer; a recording of its own
    /// that ends by itself. False: the buffer does not hold it, or something is being recorded.
    bool keepLastTitle(const BASS::RecordingOptions& options);
    /// Nothing is written until it is resumed; titles make no cuts meanwhile.
    void setRecordingPaused(bool isPaused);
    [[nodiscard]] bool isRecordingPaused() const { return m_isRecordingPaused; }
    void stopRecording();
    [[nodiscard]] bool isRecording() const { return m_recorder.isRunning(); }
    [[nodiscard]] BASS::StreamRecorder& recorder() { return m_recorder; }
    /// Writes the stream's own data beside an encoded recording, where that is wanted.
    [[nodiscard]] BASS::StreamRecorder& originals() { return m_originals; }

    /// Gets a SplitEvent for every cut; null: nobody. It outlives the engine or takes itself out.
    void setMainObject(QObject* object) { m_mainObject = object; }

  public slots:
    void slot_splitDelay();

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
    void sig_recordingPaused(bool isPaused);

  protected:
    bool event(QEvent* event) override;
    void onNotification(int code, const QVariant& payload) override;
    void onConnected(const BASS::Channel& channel) override;
    void onConnectFailed(const BASS::ConnectSequence& connect) override;
    void onStatusLine(const QString& text, bool isImportant) override;

    // --- network thread
    // ---------------------------------------------------------------------------
    void OnSplitFile(const BASS::Song& song) override;
    void connectionBegan(const char* headers) override;
    void audioBytes(const char* data, qint64 bytes) override;
    void connectionEnded() override;

  private:
    void setState(PlayState state);
    void disconnectChannels(std::chrono::milliseconds fade);
    void fadeOut(BASS::Channel channel, std::chrono::milliseconds fade);
    void startPlaying(const BASS::Channel& channel, int fadeInMs);
    void connectionLost(unsigned channel);
    void channelEnded(unsigned channel);
    void stalled(unsigned channel, bool isResumed);
    [[nodiscard]] BASS::ConnectRequest
    requestFor(const QString& address, int attempts, BASS::StreamKind kind) const;
    void scheduleReconnect();
    void reconnect();
    void giveUp(const QString& reason);
    void publishSong();
    void rememberAutoGain();
    void recallAutoGain();
    void startEncoding(const BASS::RecordingOptions& options);
    void recordingFinished();
    void tellPaused(bool isPaused);
    [[nodiscard]] bool isEncodingWanted(const BASS::RecordingOptions& options);
    void splitDelayed(const BASS::Song& song);
    void postSplitDelay(const BASS::Song& song);
    void postSplit(const BASS::Song& song);
    static std::chrono::milliseconds steadyNow();
    [[nodiscard]] std::chrono::milliseconds outage() const;

    PlayState m_state = PlayState::Stopped;
    BASS::StationRecord m_station;
    BASS::Channel m_current; ///< heard
    BASS::Channel m_next; ///< the connection that came back, until the old one has been played out
    BASS::StreamKind m_kind = BASS::StreamKind::None;
    QString m_playedAddress;               ///< of the connection that stood last, after playlists
    std::chrono::milliseconds m_lostAt{0}; ///< steady, begin of the last outage; 0: there was none
    std::chrono::milliseconds m_connectedAt{0};
    int m_reconnectAttempt = 0;
    BASS::TimeShift m_shift;
    QTimer m_reconnectTimer;
    QTimer m_infoTimer;
    std::atomic<unsigned> m_splitDelayMs{0}; ///< the station's own
    BASS::Song m_pendingSong;                ///< the next file is named after it
    QPointer<QObject> m_mainObject;
    BASS::Song m_publishedSong;
    QHash<QString, float> m_autoGains;   ///< where the automatic volume stood, by address
    std::vector<BASS::Channel> m_fading; ///< still heard on their way out
    BASS::StreamRecorder m_recorder;
    BASS::StreamRecorder m_originals;
    BASS::ChannelEncoder m_encoder;
    std::atomic<bool> m_isRecorderOn{false};
    bool m_isRecordingPaused = false;
};
