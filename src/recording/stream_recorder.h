#pragma once

#include "recording/recording_types.h"

#include <QByteArray>
#include <QObject>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace BASS {

class EncodedSession;

/// Bytes of a stream that came before a recording was asked for. Places are those in `bytes`.
struct PastStream {
    QByteArray bytes;            ///< what the format needs in front comes first; empty: nothing
    qint64 begin = 0;            ///< the recording begins here; what comes before helps to decode
    Song song;                   ///< at the beginning
    std::vector<Song> titles;    ///< behind the beginning, with their places in the connection
    qint64 end = 0;              ///< place behind the last byte, in all bytes fed
    qint64 connectionOffset = 0; ///< place of the connection's first byte; negative: not held
};

/// Writes the bytes of a stream to files as they came, cut where the titles change.
///
/// *Thread*: lives on the GUI thread. The feed functions may be called from any one thread at a
/// time (the library's network thread); they copy into a bounded queue and never block. Decisions
/// and disk work happen on the recorder's own writer thread. *Owner*: the engine. Destroying it
/// finishes the open file first. *Life*: start(), any number of connections, stop() or an error;
/// then it may be started again.
///
/// A cut lies at the first frame or packet boundary at or behind the title's place in the bytes
/// plus the split delay in stream time; neither the window nor the clock has a part in it.
class StreamRecorder final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StreamRecorder)

  public:
    explicit StreamRecorder(QObject* parent = nullptr);
    ~StreamRecorder() override;

    // --- GUI thread -----------------------------------------------------------------------------
    /// `song` names the first file where the stream has not said a title yet (may be empty).
    /// What the buffer holds comes first: without splitting all of it, else from the beginning of
    /// the song on, or all of it where its beginning is gone.
    void start(const RecordingOptions& options, const Song& song);
    /// The shortest time from one sig_progress to the next; at first 250 ms.
    void setProgressInterval(std::chrono::milliseconds interval);
    /// A recording whose bytes come from encoders by feedEncoded(). stop() ends it when their files
    /// have ended.
    /// Returns what is held of the connection that stands, for a start before now: with the
    /// beginning of `song`, or of all without splitting, where there is a buffer; else at
    /// `decoded`, the place in the connection up to which it is decoded.
    PastStream startEncoded(const RecordingOptions& options, const Song& song, qint64 decoded);
    /// Without a buffer the last megabyte is kept, for startEncoded() alone.
    void setTailKept(bool isKept);
    /// Keeps the last megabytes of the stream and its titles while nothing is recorded; 0: nothing,
    /// and the memory is given back. At most 1024.
    void setBufferSize(int megabytes);
    /// Another station: what is buffered of the last one is forgotten.
    void clearBuffer();
    /// Writes the title before the running one to a file, by a recording of its own that ends at
    /// once, where the buffer holds it from its beginning. `running`: the song that is heard;
    /// empty: the newest one. False: there is no such title.
    bool keepLastTitle(const RecordingOptions& options, const Song& running);
    /// Everything fed so far is written, then sig_finished comes. Returns at once.
    void stop();
    /// As stop(), and waits for the disk. For shutdown only.
    void stopAndWait();
    [[nodiscard]] bool isRunning() const;
    /// No cuts until resumed; nothing is written meanwhile.
    void setPaused(bool isPaused);

    // --- feed: one thread at a time, never blocks
    // -------------------------------------------------
    /// A connection stands: its bytes follow. A recording that runs goes on in the open file where
    /// the format is the same, else in a new one.
    void connectionBegan();
    /// Returns the place behind them in all bytes fed.
    qint64 append(const char* data, qint64 bytes);
    /// A new track begins at this place of the stream. Ignored for Ogg streams, whose links carry
    /// their own titles.
    void trackChanged(const Song& song);
    /// The connection is gone; the open file waits for the next one.
    void connectionEnded();
    /// Any thread, in order: what becomes of an encoded recording, on the writer thread. `bytes`:
    /// what it holds in memory.
    void feedEncoded(std::function<void(EncodedSession&)> change, qint64 bytes);

    /// Any thread: a JPEG or PNG picture for the tags of files of this track that are not finished.
    void setCover(const QString& track, const QByteArray& picture);

  signals:
    /// Comes once more for the same file where its first title gives it another name.
    void sig_fileOpened(const QString& path, const BASS::Song& song);
    /// Closed, on the disk, and its tags are in it.
    void sig_fileFinished(const BASS::RecordedFile& file);
    void sig_progress(const BASS::RecordingProgress& progress);
    /// The recording has ended by itself; what was written before is safe. sig_finished follows.
    void sig_failed(const BASS::RecordingError& error);
    void sig_finished();

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace BASS
