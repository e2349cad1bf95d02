#pragma once

#include "recording/c_recording.h"
#include "recording/disk_space.h"
#include "recording/recording_session.h"
#include "recording/writer_session.h"

#include <map>
#include <optional>

namespace BASS {

/// One recording whose files are made by encoders, one encoder a file: takes the encoders' bytes
/// and writes them. A file is there from its first audio on: headers alone would not play.
///
/// *Thread*: the recorder's writer thread; blocks on disk. *Owner*: the recorder; clock and
/// listener outlive it. *Life*: files begin and end in any order and may overlap; after finish() it
/// is over when the last of them has ended.
class EncodedSession final : public WriterSession {
    Q_DISABLE_COPY_MOVE(EncodedSession)

  public:
    EncodedSession(RecordingOptions options, const Clock& clock, RecordingListener& listener);
    ~EncodedSession() override;

    /// Names the file of an encoder, whose bytes may have begun to come. Once more: the name is
    /// another one, where the file is not there yet.
    void beginFile(quint32 encoder, const Song& song);
    void append(quint32 encoder, const QByteArray& bytes);
    /// Replaces bytes at a place of the file.
    void rewrite(quint32 encoder, qint64 offset, const QByteArray& bytes);
    /// `hasFailed`: by itself; the recording ends.
    void endFile(quint32 encoder, bool hasFailed);
    /// Seconds of audio that the encoder has been given; never told: the clock counts.
    void tellSeconds(quint32 encoder, double seconds);
    /// A title inside the newest file. `seconds`: of the file's audio before it; negative: all that
    /// there is.
    void noteTitle(const Song& song, double seconds);
    void connectionLost();
    void connectionBack();
    void flush() override;
    void sync() override;
    void finish() override;
    void close() override;
    void fail(const RecordingError& error) override;
    [[nodiscard]] bool isOver() const override { return m_isOver; }
    [[nodiscard]] RecordingProgress progress() const override;

  private:
    struct File {
        CRecording recording;
        Song song;
        bool isNamed = false;
        QByteArray waiting;                ///< came before the name or the first audio
        QVector<SessionLog::Track> titles; ///< noted before the file was there
        QVector<RecordingGap> gaps;        ///< as well
        QDateTime started;                 ///< with the first bytes
        std::chrono::milliseconds startedAt{0};
        std::optional<std::chrono::milliseconds> encoded; ///< nothing: not told
    };

    /// Begins to write, where the file has a name and audio.
    void openIfReady(File& file, bool isEnd);
    void open(File& file);
    void addTitle(const SessionLog::Track& track);
    void closeFile(File& file);
    void check(const File& file);
    [[nodiscard]] std::chrono::milliseconds duration(const File& file) const;
    File* newest(bool (*isWanted)(const File& file));

    RecordingOptions m_options;
    const Clock& m_clock;
    RecordingListener& m_listener;
    DiskSpace m_space;
    std::map<quint32, File> m_files; ///< not ended
    SessionLog m_log;
    QDateTime m_lostAt; ///< invalid: not lost
    QString m_path;     ///< of the newest file
    int m_count = 0;    ///< files that are kept
    qint64 m_finishedBytes = 0;
    bool m_isFinishing = false;
    bool m_isOver = false;
};

} // namespace BASS
