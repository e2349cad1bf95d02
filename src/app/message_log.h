#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class AppSettings;

/// What the log keeps and where.
struct MessageLogSetup {
    QString path;                   ///< of the file; empty: no file
    bool isDebugKept = false;       ///< otherwise debug lines are dropped at once
    qint64 fullBytes = 0;           ///< size at which the file is put aside; 0: 5 MB
    int memoryLines = 2000;         ///< kept for a log view
    std::size_t mostQueued = 10000; ///< lines; what comes beyond is counted, not kept
};

/// "Wavelark.log" in the data folder and the level, as the settings say. GUI thread.
MessageLogSetup messageLogSetup(const AppSettings& settings);

/// The debug log: takes over Qt's messages, writes "time thread category level message" lines to a
/// file on a thread of its own, keeps the last ones for a log view, and sends warnings and worse to
/// the standard error output. Credentials are blotted out before a line goes anywhere.
/// Thread: lives on the GUI thread; messages come from any thread and never wait for the disk.
/// Owner: main(). Life: one at a time; the destructor writes what is queued and gives the messages
/// back to the handler before.
class MessageLog final : public QObject {
    Q_OBJECT

  public:
    explicit MessageLog(MessageLogSetup setup, QObject* parent = nullptr);
    ~MessageLog() override;

    /// New file, new level: from the next line on.
    void setUp(MessageLogSetup setup);
    /// The last lines, oldest first.
    [[nodiscard]] QStringList recentLines() const;
    /// Waits until everything said so far is written. False: not within the limit.
    bool flush(std::chrono::milliseconds limit);

  signals:
    /// From the writer's thread.
    void sig_linesAdded(const QStringList& lines);

  private:
    struct Line {
        qint64 msecsSinceEpoch;
        quint64 thread;
        QtMsgType level;
        QByteArray category;
        QString message;
    };

    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);
    void take(QtMsgType type, const char* category, const QString& message);
    void run();
    void write(const std::deque<Line>& lines, std::size_t dropped);

    mutable std::mutex m_mutex; // guards all up to the thread
    std::condition_variable m_wake;
    std::condition_variable m_done;
    MessageLogSetup m_setup;
    std::deque<Line> m_queue;
    std::size_t m_dropped = 0;
    bool m_isBusy = false;
    bool m_isUrgent = false;
    bool m_isStopping = false;
    std::deque<QString> m_recent;
    bool m_owesBacklog = true; ///< the first file begins with the lines from before it was known

    bool m_hasFileFailed = false; // writer's thread only
    QtMessageHandler m_before = nullptr;
    std::thread m_thread;
};
