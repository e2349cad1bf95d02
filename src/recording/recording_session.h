#pragma once

#include "base/clock.h"
#include "recording/c_record.h"
#include "recording/disk_space.h"
#include "recording/split_planner.h"
#include "recording/stream_history.h"
#include "recording/stream_parser.h"
#include "recording/writer_session.h"

#include <QString>

#include <optional>

namespace BASS {

/// What a recording session tells its owner; called on the thread that feeds it.
class RecordingListener {
  public:
    virtual ~RecordingListener() = default;
    virtual void fileOpened(const QString& path, const Song& song) = 0;
    virtual void fileFinished(const RecordedFile& file) = 0;
    /// Something was added to what the session tells of itself.
    virtual void logChanged(const SessionLog& log) = 0;
    virtual void titleRecorded(const SessionLog::Track& track) = 0;
    virtual void failed(const RecordingError& error) = 0;
};

/// One recording from start to stop: takes the fed bytes and titles in order, cuts them and writes
/// the files.
///
/// *Thread*: the recorder's writer thread; blocks on disk. *Owner*: the recorder; clock and
/// listener outlive it. *Life*: any number of connections, then finish(). After isOver() everything
/// is ignored.
class RecordingSession final : public WriterSession {
    Q_DISABLE_COPY_MOVE(RecordingSession)

  public:
    RecordingSession(RecordingOptions options,
                     Song song,
                     const Clock& clock,
                     RecordingListener& listener);
    ~RecordingSession() override;

    /// Nothing is written before the file of this song begins; what comes until then is the
    /// pre-roll of its first frame. Called before the first byte. Streams that cannot be cut begin
    /// at once.
    void beginAt(const Song& song);
    /// `position`: of the connection's next byte in all bytes fed. `header`: what the connection
    /// has sent before it that its format cannot do without. `isStart`: no byte was sent before.
    void connectionBegan(qint64 position, const QByteArray& header, bool isStart);
    void append(const QByteArray& bytes);
    /// `position`: in all bytes fed.
    void trackChanged(const Song& song, qint64 position);
    void connectionEnded();
    void pause();
    /// As connectionBegan(), in the middle of a connection.
    void resume(qint64 position, const QByteArray& header);
    void flush() override;
    void sync() override;
    void finish() override;
    void close() override { finish(); }
    void fail(const RecordingError& error) override;
    [[nodiscard]] bool isOver() const override { return m_isOver; }
    [[nodiscard]] RecordingProgress progress() const override;

  private:
    void appendPiece(const QByteArray& bytes);
    void detect(bool isEnd);
    void followFormat(bool isEnd);
    void endParser();
    void takeFrames(const FrameList& frames);
    void takeFrame(const AudioFrame& frame);
    void takeLink(const AudioFrame& frame);
    void cutBefore(const AudioFrame& frame);
    void cutInHistory(qint64 position);
    void cutAt(std::size_t at, const Song& song);
    void cut(const Song& song);
    void splitByTime(const AudioFrame& frame);
    void noteGapEnd();
    void noteTitle(const Song& song);
    bool checkSpace();
    void openFile(const AudioFrame& first);
    void closeFile();
    void checkFile();
    bool nameFirstFile(const Song& song, qint64 position);
    [[nodiscard]] bool isCutting() const;
    [[nodiscard]] QString freePath(const QString& extension) const;

    RecordingOptions m_options;
    const Clock& m_clock;
    RecordingListener& m_listener;
    SplitPlanner m_planner;
    std::chrono::milliseconds m_lead{0}; ///< so much before its title lies a cut
    Song m_song;                         ///< of the open file, or of the next one
    Song m_heard;                        ///< the newest title in the open file
    std::optional<Song> m_awaited;       ///< see beginAt()

    // the connection
    QByteArray m_undetected;
    qint64 m_position = 0;         ///< of the byte behind the last one taken
    qint64 m_connectionStart = -1; ///< -1: began before the session
    std::unique_ptr<StreamParser> m_parser;
    StreamFormat m_format = StreamFormat::Unknown;
    bool m_isConnected = false;
    bool m_isPaused = false;

    // the stream
    StreamHistory m_history;
    std::size_t m_fileFrames = 0; ///< how many of its newest frames are in the open file
    std::shared_ptr<const OggLink> m_link;

    // the files
    CRecord m_record;
    StreamFormat m_fileFormat = StreamFormat::Unknown;
    quint32 m_fileStream = 0;
    QString m_path;  ///< of the newest
    int m_count = 0; ///< that are kept
    QDateTime m_fileStarted;
    SessionLog m_log;
    QDateTime m_lostAt; ///< invalid: not lost
    DiskSpace m_space;
    qint64 m_finishedBytes = 0;
    bool m_isOver = false;
};

} // namespace BASS
