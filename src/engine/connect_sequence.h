#pragma once

#include "audio/audio_library.h"
#include "engine/connect_plan.h"
#include "engine/stream_sink.h"

#include <QCoreApplication>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace BASS {

/// What a connect needs to know; copied before it starts.
struct ConnectRequest {
    QString address;
    QString declaredFormat;
    int attempts = 2;
    bool isFloat = true;
    StreamKind knownKind = StreamKind::None; ///< a reconnect: this create function and no other
    bool isPlaylistChecked = false;  ///< every failed try looks whether the address is a playlist
    bool isPlaylistProcessed = true; ///< what is no audio is looked at as a playlist
    bool hasProxy = false;
    QString userAgent;       ///< told to playlist servers, restored after an address's own
    QString knownAddress;    ///< of a directory station, from the last time
    QString recordingDevice; ///< its name; empty: the system's default
};

/// Its way to the outside. Called on the worker's thread.
struct ConnectReport {
    std::function<void(const QString& text, bool isImportant)> status;
    std::function<void(const QString& text, bool isError)> log;
    std::function<void(StreamKind)> createBegins;
};

/// One connect from address to channel: attempts, create functions, fallbacks, time limit.
///
/// *Thread*: run() on the connect worker; cancel() from any thread. *Owner*: the engine, which
/// keeps it as long as its channel lives, for the library's callbacks point at it. *Life*: run()
/// once.
class ConnectSequence final {
    Q_DECLARE_TR_FUNCTIONS(BASS::Stream)

  public:
    ConnectSequence(AudioLibrary& library,
                    ConnectRequest request,
                    ConnectReport report,
                    StreamSink& sink);

    void run();
    /// run() ends within 200 ms; its channel, if it made one, is freed.
    void cancel();
    [[nodiscard]] bool isCanceled() const { return m_isCanceled; }
    /// From now on nothing reaches the sink.
    void detachSink() { m_sink.detach(); }

    // --- results, after run() -------------------------------------------------------------------
    [[nodiscard]] HSTREAM handle() const { return m_handle; }
    [[nodiscard]] StreamKind kind() const { return m_kind; }
    [[nodiscard]] int errorCode() const { return m_errorCode; }
    [[nodiscard]] QString httpMessage() const;
    /// The address that is played, after playlists and the directory.
    [[nodiscard]] const QString& address() const { return m_address; }
    [[nodiscard]] bool isLocalFile() const { return isLocalAddress(m_address); }

    /// To be set once as the library's TITLEPROC; finds the sequence by its user pointer.
    static void titleProc(const StreamTitle& title, void* user);

  private:
    static void downloadProc(const void* buffer, DWORD length, void* user);
    void takeHeaders(const char* headers);
    void runNetwork();
    bool mayGoOn() const;
    bool tryNetwork(int attempt);
    void logFailure();
    bool followPlaylist();
    bool lookUpAddress();
    QByteArray fetch(const QString& address);
    void playLocalPlaylist();
    void openLocalFile();
    void openRecordingDevice();
    std::optional<int> recordingDevice();
    bool createFromAddress(const QString& address);
    bool create(StreamKind kind, const QString& address);
    HSTREAM callCreate(StreamKind kind, const void* url);
    HSTREAM callCreateFile(StreamKind kind, const void* path);
    [[nodiscard]] bool mayFallBack() const;
    void pauseBeforeNextTry();
    void finish();

    AudioLibrary& m_library;
    const ConnectRequest m_request;
    const ConnectReport m_report;
    HeldSink m_sink;
    std::atomic<bool> m_isCanceled{false};
    QString m_address;
    QString m_userAgent; ///< told by the address itself
    bool m_isPlaylistChecked;
    StreamKind m_forcedKind; ///< None: chosen by format and address
    int m_playlistHops = 0;
    HSTREAM m_handle = 0;
    StreamKind m_kind = StreamKind::None;
    int m_errorCode = 0;
    int m_elapsedTotalTimerSeconds = 0;
    mutable std::mutex m_httpMutex; ///< guards m_httpMess, written by the network thread
    QString m_httpMess;
};

} // namespace BASS
