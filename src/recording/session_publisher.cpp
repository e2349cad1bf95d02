#include "recording/session_publisher.h"

#include "base/atomic_file.h"
#include "base/log.h"
#include "recording/file_pattern.h"
#include "recording/file_tagger.h"
#include "recording/mailbox.h"
#include "recording/stream_recorder.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace BASS {
namespace {

constexpr int kMostCovers = 8;

FileTags tagsOf(const RecordedFile& file, const RecordingOptions& options) {
    FileTags tags;
    tags.album = options.station.station;
    tags.comment = file.comment;
    tags.recorded = file.started;
    if (options.mode == RecordMode::NoSplit) {
        // many songs: none of them names it
        tags.title =
            options.station.station + file.started.toString(QStringLiteral(" yyyy-MM-dd hh:mm"));
        return tags;
    }
    tags.artist = file.song.artist;
    tags.title = file.song.title.isEmpty() ? file.song.track : file.song.title;
    return tags;
}

/// A name beside the session's first file that nothing has yet.
QString
freeListPath(const SessionLog& log, const RecordingOptions& options, const QString& suffix) {
    const QFileInfo first(log.tracks.first().path);
    const QString stamp = log.started.toString(QStringLiteral(" yyyy-MM-dd hh.mm.ss"));
    const QString name = options.mode == RecordMode::NoSplit
                             ? first.completeBaseName()
                             : safeComponent(log.station + stamp, options.invalidReplacement);
    const QString path = first.dir().filePath(name + QLatin1Char('.') + suffix);
    QString free = path;
    for (int n = 2; QFileInfo::exists(free); ++n)
        free =
            first.dir().filePath(QStringLiteral("%1_%2.%3").arg(name, QString::number(n), suffix));
    return free;
}

void save(const QString& path, const QByteArray& bytes) {
    const Status status = replaceFile(path, bytes);
    if (!status)
        qCWarning(lcRecording) << "SessionPublisher::save" << status.error();
}

void appendTitle(const RecordingOptions& options, const SessionLog::Track& track) {
    QFile file(QDir(options.folder).filePath(QStringLiteral("tracks.txt")));
    // one write at the end of the file, so that a crash leaves whole lines
    const QByteArray line = trackLine(track, options.station.station);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) ||
        file.write(line) != line.size())
        qCWarning(lcRecording) << "SessionPublisher::appendTitle" << file.errorString();
}

} // namespace

SessionPublisher::SessionPublisher(StreamRecorder& recorder, Mailbox& mailbox)
    : m_recorder(recorder), m_mailbox(mailbox) {}

void SessionPublisher::begin(const RecordingOptions& options) {
    m_options = options;
    m_lists = std::make_shared<Lists>();
}

void SessionPublisher::finish(std::function<void()> done) {
    m_queue.post([this, done = std::move(done)] { m_mailbox.post(done); });
}

void SessionPublisher::fileOpened(const QString& path, const Song& song) {
    m_mailbox.post([this, path, song] { emit m_recorder.sig_fileOpened(path, song); });
}

void SessionPublisher::fileFinished(const RecordedFile& file) {
    m_queue.post([this, file, options = m_options] {
        RecordedFile finished = file;
        if (options.hasTags)
            tag(finished, options);
        m_mailbox.post([this, finished] { emit m_recorder.sig_fileFinished(finished); });
    });
}

void SessionPublisher::tag(RecordedFile& file, const RecordingOptions& options) {
    FileTags tags = tagsOf(file, options);
    tags.cover = cover(file.song.track);
    removeTagLeftovers(QFileInfo(file.path).path());
    const Status status = tagFile(file.path, tags);
    if (!status)
        qCWarning(lcRecording) << "SessionPublisher::tag" << status.error();
    file.bytes = QFileInfo(file.path).size();
}

void SessionPublisher::logChanged(const SessionLog& log) {
    if (!m_options.hasTrackList || log.tracks.isEmpty())
        return;
    SessionLog copy = log;
    // lists of its own: the session's grow while these are read
    copy.tracks.detach();
    copy.files.detach();
    copy.gaps.detach();
    {
        const std::lock_guard<std::mutex> lock(m_lists->mutex);
        const bool isWaiting = m_lists->newest.has_value();
        m_lists->newest = std::move(copy);
        if (isWaiting)
            return;
    }
    m_queue.post([options = m_options, lists = m_lists] { writeLists(*lists, options); });
}

void SessionPublisher::writeLists(Lists& lists, const RecordingOptions& options) {
    SessionLog log;
    {
        const std::lock_guard<std::mutex> lock(lists.mutex);
        log = *std::exchange(lists.newest, std::nullopt);
    }
    if (lists.listPath.isEmpty())
        lists.listPath = freeListPath(log, options, trackListSuffix(options.trackList.format));
    save(lists.listPath, trackList(log, options.trackList, lists.listPath));
    const QByteArray gaps = gapLog(log);
    if (gaps.isEmpty())
        return;
    if (lists.logPath.isEmpty())
        lists.logPath = freeListPath(log, options, QStringLiteral("log"));
    save(lists.logPath, gaps);
}

void SessionPublisher::titleRecorded(const SessionLog::Track& track) {
    if (m_options.isTitleListKept && !track.song.isEmpty())
        m_queue.post([track, options = m_options] { appendTitle(options, track); });
}

void SessionPublisher::failed(const RecordingError& error) {
    m_mailbox.post([this, error] { emit m_recorder.sig_failed(error); });
}

void SessionPublisher::setCover(const QString& track, const QByteArray& picture) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_covers.size() >= kMostCovers && !m_covers.contains(track))
        m_covers.clear();
    m_covers.insert(track, picture);
}

QByteArray SessionPublisher::cover(const QString& track) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_covers.value(track);
}

} // namespace BASS
