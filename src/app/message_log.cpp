#include "app/message_log.h"

#include "app/credential_scrub.h"
#include "app/log_file.h"

#include <QThread>

#include <chrono>
#include <cstdio>
#include <functional>
#include <utility>

namespace {
using namespace std::chrono_literals;
constexpr auto kGather = 50ms; ///< lines that come together are written together
constexpr auto kLastWords = 2s;
constexpr int kLongestMessage = 8192; ///< characters

// The log that takes Qt's messages; the mutex keeps it alive for those who are just handing one in.
std::mutex g_currentMutex;
MessageLog* g_current = nullptr;

const char* levelName(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        return "fatal";
    }
    return "?";
}

bool isSerious(QtMsgType type) {
    return type != QtDebugMsg && type != QtInfoMsg;
}

/// One line is one line: nobody forges entries with line breaks in a title.
QString onOneLine(QString message) {
    message.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    message.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    return message;
}

void toStandardError(const QByteArray& line) {
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
    std::fflush(stderr);
}
} // namespace

MessageLog::MessageLog(MessageLogSetup setup, QObject* parent)
    : QObject(parent), m_setup(std::move(setup)), m_thread([this] { run(); }) {
    {
        const std::lock_guard<std::mutex> lock(g_currentMutex);
        g_current = this;
    }
    m_before = qInstallMessageHandler(&MessageLog::handle);
}

MessageLog::~MessageLog() {
    qInstallMessageHandler(m_before);
    {
        const std::lock_guard<std::mutex> lock(g_currentMutex);
        g_current = nullptr;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void MessageLog::setUp(MessageLogSetup setup) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_setup = std::move(setup);
    m_owesBacklog = m_owesBacklog && !m_setup.path.isEmpty();
}

QStringList MessageLog::recentLines() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList lines;
    for (const QString& line : m_recent)
        lines.append(line);
    return lines;
}

bool MessageLog::flush(std::chrono::milliseconds limit) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isUrgent = true;
    m_wake.notify_all();
    const bool isWritten =
        m_done.wait_for(lock, limit, [this] { return m_queue.empty() && !m_isBusy; });
    m_isUrgent = false;
    return isWritten;
}

void MessageLog::handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const std::lock_guard<std::mutex> lock(g_currentMutex);
    if (g_current == nullptr)
        return;
    g_current->take(type, context.category, message);
    // The process ends when this returns.
    if (type == QtFatalMsg)
        g_current->flush(kLastWords);
}

void MessageLog::take(QtMsgType type, const char* category, const QString& message) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (type == QtDebugMsg && !m_setup.isDebugKept)
            return;
        if (m_queue.size() >= m_setup.mostQueued && type != QtFatalMsg) {
            ++m_dropped;
            return;
        }
        const auto thread =
            static_cast<quint64>(std::hash<std::thread::id>()(std::this_thread::get_id()));
        m_queue.push_back({QDateTime::currentMSecsSinceEpoch(),
                           thread,
                           type,
                           QByteArray(category != nullptr ? category : "default"),
                           message.left(kLongestMessage)});
    }
    m_wake.notify_all();
}

void MessageLog::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_isStopping || !m_queue.empty(); });
        if (m_queue.empty())
            return;
        m_wake.wait_for(lock, kGather, [this] { return m_isStopping || m_isUrgent; });
        const std::deque<Line> lines = std::exchange(m_queue, {});
        const std::size_t dropped = std::exchange(m_dropped, 0);
        m_isBusy = true;
        lock.unlock();
        write(lines, dropped);
        lock.lock();
        m_isBusy = false;
        m_done.notify_all();
    }
}

void MessageLog::write(const std::deque<Line>& lines, std::size_t dropped) {
    QStringList texts;
    QByteArray serious;
    const auto add = [&](const QString& text, bool isForUser) {
        texts.append(text);
        if (isForUser)
            serious += text.toLocal8Bit() + '\n';
    };
    for (const Line& line : lines) {
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(line.msecsSinceEpoch);
        add(QStringLiteral("%1 %2 %3 %4 ")
                    .arg(time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")))
                    .arg(line.thread & 0xffffff, 6, 16, QLatin1Char('0'))
                    .arg(QLatin1String(line.category), QLatin1String(levelName(line.level))) +
                onOneLine(scrubCredentials(line.message)),
            isSerious(line.level));
    }
    if (dropped > 0)
        add(QStringLiteral("log lines dropped count=%1").arg(dropped), true);

    MessageLogSetup setup;
    QStringList forFile = texts;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        setup = m_setup;
        if (!setup.path.isEmpty() && std::exchange(m_owesBacklog, false))
            forFile = QStringList(m_recent.begin(), m_recent.end()) + texts;
        for (const QString& text : texts)
            m_recent.push_back(text);
        while (m_recent.size() > static_cast<std::size_t>(setup.memoryLines))
            m_recent.pop_front();
    }
    if (!setup.path.isEmpty()) {
        LogFile file(setup.path, setup.fullBytes > 0 ? setup.fullBytes : LogFile::kFullBytes);
        const bool isWritten = file.append(forFile.join(QLatin1Char('\n')).toUtf8() + '\n');
        if (!isWritten && !m_hasFileFailed)
            serious += "log file cannot be written path=" + setup.path.toLocal8Bit() + '\n';
        m_hasFileFailed = !isWritten;
    }
    if (!serious.isEmpty())
        toStandardError(serious);
    emit sig_linesAdded(texts);
}
