#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

#include <chrono>
#include <functional>
#include <memory>

/// One title's worth of encoded audio.
struct StationTrack {
    QByteArray audio;
    QByteArray
        title; ///< as it goes into StreamTitle='...'; bytes, so that any code page can be sent
};

/// What the station does with the connections that it accepts from now on.
struct StationScript {
    QVector<StationTrack> tracks;
    bool isLooped = true;   ///< after the last track the first follows; else the end of the stream
    bool continues = false; ///< a new connection goes on where the one before it ended
    int metaint = 4096;     ///< audio bytes between title blocks; 0: no titles
    int bytesPerSecond = 16000; ///< of the encoded audio
    double speed = 1.0;         ///< times real time; 0: as fast as the socket takes it
    qint64 burst = 0;           ///< audio bytes sent at once at the beginning
    int chunk = 0;              ///< most bytes a write; 0: no limit
    QByteArray contentType = "audio/mpeg";
    bool isOldIcy = false;   ///< answers "ICY 200 OK" instead of HTTP
    QByteArray extraHeaders; ///< complete lines, each ended by CRLF
    std::chrono::milliseconds answerDelay{0};
    qint64 stallAt = -1;  ///< audio bytes of the connection after which nothing more comes
    qint64 closeAt = -1;  ///< ... after which it is closed in order
    qint64 resetAt = -1;  ///< ... after which it is reset
    QByteArray rawAnswer; ///< not empty: sent as it stands instead of anything else, then closed
    QVector<QByteArray> rawPieces; ///< the same, each piece a segment of its own
    QByteArray rawForEver;         ///< behind rawAnswer again and again, until the peer has gone
    bool isServedOnce = false;     ///< connections after the first are closed without an answer
    bool isSilent = false;         ///< accepts and never answers
    /// Set: a server of pages. Gets a request, gives the whole answer; the connection stays open
    /// for the next request. Called on the station's thread.
    std::function<QByteArray(const QByteArray& request)> page;
};

/// What one connection was sent.
struct ServedConnection {
    QByteArray request;
    QByteArray audio;                          ///< title blocks taken out
    QVector<QPair<qint64, QByteArray>> titles; ///< audio bytes before the block, and its title
    qint64 audioBytes = 0;                     ///< also counted where the audio itself is not kept
    bool isOpen = true;
};

/// A radio station on the loopback interface that does exactly what it is told, on a thread of its
/// own. Thread: every function may be called from any thread.
class TestStation {
  public:
    TestStation();
    ~TestStation();
    TestStation(const TestStation&) = delete;
    TestStation& operator=(const TestStation&) = delete;

    void setScript(const StationScript& script);
    /// Soak tests serve more than fits into memory.
    void setAudioKept(bool isKept);
    /// Port 0 takes a free one. False where it is taken.
    bool listen(quint16 port = 0);
    /// New connections are refused from now on; those that stand go on.
    void stopListening();
    void closeConnections();
    void resetConnections();
    [[nodiscard]] quint16 port() const;
    [[nodiscard]] QString url(const QString& path = QStringLiteral("/station")) const;
    [[nodiscard]] QVector<ServedConnection> served() const;

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

/// Reads encoded tracks, one a file; the title is the file's base name.
QVector<StationTrack> tracksFromFiles(const QStringList& paths);
