#pragma once

#include "recording/background_queue.h"
#include "recording/recording_session.h"

#include <QHash>

#include <memory>
#include <mutex>
#include <optional>

namespace BASS {

class Mailbox;
class StreamRecorder;

/// What becomes of a session's news: signals of the recorder, tags in finished files, the track
/// list, the log of gaps and the list of titles. Tags and lists are written on a thread of their
/// own, so that the next file never waits; a file is told as finished when its tags are in it.
///
/// *Thread*: the recorder's writer thread, but for setCover() and wait(). *Owner*: the recorder;
/// it and the mailbox outlive it. *Life*: begin() and finish() once a session; wait() before it
/// goes, when the writer thread is not running.
class SessionPublisher final : public RecordingListener {
    Q_DISABLE_COPY_MOVE(SessionPublisher)

  public:
    SessionPublisher(StreamRecorder& recorder, Mailbox& mailbox);

    void begin(const RecordingOptions& options);
    /// `done` is called on the mailbox's thread, behind everything told before.
    void finish(std::function<void()> done);

    void fileOpened(const QString& path, const Song& song) override;
    void fileFinished(const RecordedFile& file) override;
    void logChanged(const SessionLog& log) override;
    void titleRecorded(const SessionLog::Track& track) override;
    void failed(const RecordingError& error) override;

    /// Any thread. The picture goes into files of this song that are not finished yet.
    void setCover(const QString& track, const QByteArray& picture);
    /// Waits until everything is on the disk.
    void wait() { m_queue.finish(); }

  private:
    /// The lists of one session. Where the disk is slower than the titles, only the newest state
    /// waits for it.
    struct Lists {
        // the jobs alone look into these
        QString listPath; ///< chosen when it is first written
        QString logPath;
        std::mutex mutex;                 ///< guards the newest
        std::optional<SessionLog> newest; ///< waits for its job
    };

    static void writeLists(Lists& lists, const RecordingOptions& options);

    [[nodiscard]] QByteArray cover(const QString& track);
    void tag(RecordedFile& file, const RecordingOptions& options);

    StreamRecorder& m_recorder;
    Mailbox& m_mailbox;
    RecordingOptions m_options;
    std::shared_ptr<Lists> m_lists; ///< shared with the jobs
    std::mutex m_mutex;             ///< guards m_covers
    QHash<QString, QByteArray> m_covers;
    BackgroundQueue m_queue; ///< the last member: its jobs use the others
};

} // namespace BASS
