#include "recording/recording_session.h"

#include "base/log.h"
#include "recording/m4a_cut_writer.h"
#include "recording/ogg_link.h"
#include "recording/recording_buffer.h"
#include "recording/recording_path.h"
#include "recording/stream_format.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

constexpr std::chrono::milliseconds kLeastLead{200};

bool canBeCut(StreamFormat format) {
    return format == StreamFormat::Mpeg || format == StreamFormat::Adts ||
           format == StreamFormat::Flac;
}

} // namespace

RecordingSession::RecordingSession(RecordingOptions options,
                                   Song song,
                                   const Clock& clock,
                                   RecordingListener& listener)
    : m_options(std::move(options)), m_clock(clock), m_listener(listener),
      m_planner(m_options.splitDelay), m_song(std::move(song)), m_heard(m_song),
      m_space(m_options.folder, m_options.minFreeBytes) {
    if (-m_options.splitDelay > kLeastLead)
        m_lead = -m_options.splitDelay;
    m_log.station = m_options.station.station;
    m_log.address = m_options.address;
    m_log.started = m_clock.now();
}

void RecordingSession::beginAt(const Song& song) {
    m_awaited = song;
    m_song = {};
}

RecordingSession::~RecordingSession() {
    finish();
}

void RecordingSession::connectionBegan(qint64 position, const QByteArray& header, bool isStart) {
    if (m_isOver)
        return;
    connectionEnded();
    noteGapEnd();
    m_isConnected = true;
    m_position = position;
    m_connectionStart = isStart ? position : -1;
    m_undetected = header;
    m_format = StreamFormat::Unknown;
}

void RecordingSession::append(const QByteArray& bytes) {
    if (m_isOver || !m_isConnected || m_isPaused)
        return;
    // in pieces, so that another format is seen before the first one may come back
    constexpr int kPiece = kForeignBytes / 2;
    for (int at = 0; at < bytes.size() && !m_isOver; at += kPiece)
        appendPiece(bytes.mid(at, kPiece));
}

void RecordingSession::appendPiece(const QByteArray& bytes) {
    m_position += bytes.size();
    if (!m_parser) {
        m_undetected += bytes;
        detect(false);
        return;
    }
    FrameList frames;
    m_parser->push(bytes.constData(), bytes.size(), frames);
    takeFrames(frames);
    followFormat(false);
}

void RecordingSession::detect(bool isEnd) {
    if (m_parser || m_undetected.isEmpty())
        return;
    const auto format = detectFormat(m_undetected, isEnd);
    if (!format)
        return;
    m_format = *format;
    // a connection too short to tell what it is belongs to the open file
    if (isEnd && m_format == StreamFormat::Unknown && m_record.isOpen())
        m_format = m_fileFormat;
    qCInfo(lcRecording) << "RecordingSession::detect format=" << static_cast<int>(m_format);
    if (!canBeCut(m_format) && m_format != StreamFormat::Ogg) {
        if (isCutting())
            qCWarning(lcRecording) << "RecordingSession::detect streams of this format are not cut";
        if (m_awaited)
            m_song = *std::exchange(m_awaited, std::nullopt);
    }
    if (m_format == StreamFormat::Ogg)
        m_planner = SplitPlanner(m_options.splitDelay); // its links have the say
    m_parser = makeStreamParser(m_format, m_position - m_undetected.size());
    FrameList frames;
    const QByteArray bytes = std::exchange(m_undetected, {});
    m_parser->push(bytes.constData(), bytes.size(), frames);
    takeFrames(frames);
}

/// A connection may go over to another format without a word. Ogg goes only over to one that can be
/// left again.
void RecordingSession::followFormat(bool isEnd) {
    const QByteArray bytes = m_parser->takeForeign(isEnd);
    if (bytes.isEmpty())
        return;
    const auto format = detectFormat(bytes, isEnd);
    if (!format || *format == StreamFormat::Unknown || *format == m_format)
        return;
    const bool isFramed = *format == StreamFormat::Mpeg || *format == StreamFormat::Adts;
    if (m_format == StreamFormat::Ogg && !isFramed)
        return;
    m_parser.reset();
    m_undetected = bytes;
    detect(isEnd);
}

void RecordingSession::endParser() {
    detect(true);
    if (m_parser)
        followFormat(true);
    if (!m_parser)
        return;
    FrameList frames;
    m_parser->finish(frames);
    if (m_parser->droppedBytes() > 0)
        qCInfo(lcRecording) << "RecordingSession::endParser bytes between frames="
                            << m_parser->droppedBytes();
    takeFrames(frames);
    m_parser.reset();
}

void RecordingSession::trackChanged(const Song& song, qint64 position) {
    if (m_isOver || m_format == StreamFormat::Ogg || nameFirstFile(song, position))
        return;
    if (!isCutting()) {
        noteTitle(song);
        return;
    }
    m_planner.addTitle(song, position);
    cutInHistory(position);
    checkFile();
}

void RecordingSession::connectionEnded() {
    if (m_isOver || !m_isConnected)
        return;
    endParser();
    m_undetected.clear();
    m_isConnected = false;
    m_planner.endConnection(m_position);
    if (m_record.isOpen())
        m_lostAt = m_clock.now();
    flush();
}

void RecordingSession::noteGapEnd() {
    if (!m_lostAt.isValid())
        return;
    const QDateTime from = std::exchange(m_lostAt, {});
    if (!m_record.isOpen())
        return;
    m_log.gaps.append(
        {from, m_clock.now(), m_record.bytes(), m_record.duration(), m_record.recording().path()});
    m_listener.logChanged(m_log);
    if (!m_options.isFileReused)
        closeFile();
}

/// A title inside a file that goes on.
void RecordingSession::noteTitle(const Song& song) {
    const QString known = std::exchange(m_heard, song).track;
    if (!m_record.isOpen() || song.track == known)
        return;
    const SessionLog::Track track{
        song, m_clock.now(), m_record.recording().path(), m_record.duration()};
    m_listener.titleRecorded(track);
    if (!m_options.hasTrackList)
        return; // nobody asks again, and the file may go on for weeks
    m_log.tracks.append(track);
    m_listener.logChanged(m_log);
}

void RecordingSession::pause() {
    if (m_isOver || m_isPaused)
        return;
    endParser();
    m_isPaused = true;
    flush();
}

void RecordingSession::resume(qint64 position, const QByteArray& header) {
    if (m_isOver || !m_isPaused)
        return;
    m_isPaused = false;
    m_position = position;
    m_undetected = header;
    m_format = StreamFormat::Unknown;
    m_connectionStart = -1;
}

bool RecordingSession::isCutting() const {
    return m_options.mode != RecordMode::NoSplit;
}

void RecordingSession::takeFrames(const FrameList& frames) {
    for (const AudioFrame& frame : frames) {
        if (m_isOver)
            return;
        takeFrame(frame);
    }
}

void RecordingSession::takeFrame(const AudioFrame& frame) {
    if (frame.link)
        takeLink(frame);
    else if (canBeCut(m_format) && isCutting())
        cutBefore(frame);
    splitByTime(frame);
    if (m_isOver)
        return;
    if (m_awaited) {
        m_fileStream = frame.stream;
        m_fileFormat = m_format;
        m_history.push(frame);
        return;
    }
    const bool isOther = frame.stream != m_fileStream || m_format != m_fileFormat;
    if (m_record.isOpen() && isOther)
        closeFile();
    if (!m_record.isOpen() && !m_isOver)
        openFile(frame);
    if (!m_record.isOpen())
        return;
    m_record.write(frame);
    m_history.push(frame);
    m_fileFrames = std::min(m_fileFrames + 1, m_history.size());
    checkFile();
}

/// An Ogg link carries its own title; one that says nothing new goes on in the same file.
void RecordingSession::takeLink(const AudioFrame& frame) {
    if (frame.link == m_link)
        return;
    m_link = frame.link;
    const Song song = oggSong(*m_link);
    if (song.isEmpty() || song.track == m_song.track)
        return;
    if (isCutting() || !m_record.isOpen())
        cut(song);
    else if (song.track != m_heard.track)
        noteTitle(song);
}

void RecordingSession::cutBefore(const AudioFrame& frame) {
    const auto song = m_planner.beforeFrame(frame.position, m_history.now());
    if (!song)
        return;
    if (m_lead.count() > 0 && (m_record.isOpen() || m_awaited))
        cutAt(m_history.firstFrom(m_history.now() - m_lead), *song);
    else
        cut(*song);
}

/// Parts of a recording that is not split by its titles.
void RecordingSession::splitByTime(const AudioFrame& frame) {
    const bool canSplit = canBeCut(m_format) || frame.link != nullptr;
    if (isCutting() || !canSplit || m_options.splitEvery.count() <= 0 || !m_record.isOpen() ||
        m_record.duration() < m_options.splitEvery)
        return;
    const Song song = m_heard;
    cut(song);
}

/// A title that comes after its place was written: the tail behind the cut moves to the next file.
void RecordingSession::cutInHistory(qint64 position) {
    if (!m_record.isOpen() || !canBeCut(m_format) || !isCutting())
        return;
    const std::size_t inFile = m_history.size() - m_fileFrames;
    for (std::size_t at = std::max(m_history.firstFrom(position), inFile); at < m_history.size();
         ++at) {
        const auto song = m_planner.beforeFrame(m_history.frame(at).position, m_history.time(at));
        if (!song)
            continue;
        const auto early = m_history.firstFrom(m_history.time(at) - m_lead);
        cutAt(m_lead.count() > 0 ? early : at, *song);
        return;
    }
}

/// Cuts before a frame of the history; those from it on move to the next file.
void RecordingSession::cutAt(std::size_t at, const Song& song) {
    if (m_record.isOpen())
        at = std::max(at, m_history.size() - m_fileFrames);
    const FrameHistory tail = m_history.takeFrom(at);
    if (m_record.isOpen()) {
        m_fileFrames -= tail.size();
        m_record.takeBack(tail);
    }
    cut(song);
    takeFrames(FrameList(tail.begin(), tail.end()));
}

void RecordingSession::cut(const Song& song) {
    const bool hadSong = !m_song.isEmpty();
    if (m_record.isOpen())
        closeFile();
    if (m_isOver)
        return;
    if (m_options.mode == RecordMode::SingleSong && hadSong && m_count > 0) {
        m_isOver = true;
        return;
    }
    m_song = m_heard = song;
    if (m_awaited && m_awaited->track == song.track)
        m_awaited.reset();
}

/// A recording that begins together with its connection opens its file before it can know the
/// title; the first title block then names that file instead of cutting it.
bool RecordingSession::nameFirstFile(const Song& song, qint64 position) {
    if (!m_song.isEmpty() || m_awaited || m_count > 1 || m_connectionStart < 0 ||
        position - m_connectionStart > kFirstTitleBytes)
        return false;
    m_song = m_heard = song;
    if (!m_record.isOpen())
        return true;
    const QString old = m_record.recording().path();
    const QString path = freePath(QFileInfo(old).suffix());
    if (m_record.rename(path, song)) {
        m_path = path;
        m_log.rename(old, path);
        m_listener.fileOpened(path, song);
    }
    m_log.tracks.last().song = song;
    m_listener.titleRecorded(m_log.tracks.last());
    m_listener.logChanged(m_log);
    checkFile();
    return true;
}

QString RecordingSession::freePath(const QString& extension) const {
    return freeRecordingPath(m_options, m_song, m_clock.now(), extension, m_path);
}

void RecordingSession::openFile(const AudioFrame& first) {
    CutStart start;
    start.format = m_format;
    start.serial = QRandomGenerator::global()->generate();
    start.isMp3ByteExact = m_options.isMp3CutByteExact;
    start.isM4a =
        m_options.isM4aUsed && m_format == StreamFormat::Adts && M4aCutWriter::canWrite(first);
    const QString extension =
        start.isM4a ? QStringLiteral("m4a") : streamExtension(m_format, first);
    const bool isSameStream = first.stream == m_fileStream && m_format == m_fileFormat;
    if (!first.followsGap && isSameStream)
        start.before = m_history.preRoll();
    m_fileFormat = m_format;
    m_fileStream = first.stream;
    m_fileFrames = 0;
    if (!checkSpace())
        return;
    if (m_record.open(freePath(extension), m_song, std::move(start))) {
        m_path = m_record.recording().path();
        ++m_count;
        qCInfo(lcRecording) << "RecordingSession::openFile path=" << m_path;
        m_fileStarted = m_clock.now();
        m_log.tracks.append({m_song, m_fileStarted, m_path, {}});
        m_listener.fileOpened(m_path, m_song);
        if (!m_song.isEmpty())
            m_listener.titleRecorded(m_log.tracks.last());
        m_listener.logChanged(m_log);
    }
    checkFile();
}

void RecordingSession::closeFile() {
    RecordedFile file = m_record.stop();
    file.started = m_fileStarted;
    file.comment = recordingComment(m_log, file.path);
    m_fileFrames = 0;
    // a start within a link of Opus right before its end: all of it is what a decoder skips
    const bool isSilent = m_fileFormat == StreamFormat::Ogg && file.duration.count() <= 0;
    if (isSilent)
        QFile::remove(file.path);
    m_finishedBytes += isSilent ? 0 : file.bytes;
    if (file.bytes > 0 && !isSilent) {
        m_log.files.append({file.path, file.duration, file.bytes});
        m_listener.fileFinished(file);
    } else {
        m_log.forget(file.path);
        --m_count;
        m_path.clear();
    }
    m_listener.logChanged(m_log);
    if (!m_options.hasTrackList)
        m_log.forget(file.path); // nobody asks again, and a recording may go on for weeks
    checkFile();
}

void RecordingSession::checkFile() {
    if (const auto failure = m_record.recording().failure())
        fail(*failure);
}

void RecordingSession::flush() {
    if (m_isOver || !m_record.isOpen())
        return;
    m_record.flush();
    checkFile();
}

void RecordingSession::sync() {
    if (m_isOver || !m_record.isOpen())
        return;
    m_record.sync();
    checkFile();
    checkSpace();
}

bool RecordingSession::checkSpace() {
    if (m_isOver)
        return false;
    if (const auto full = m_space.check(m_clock.steady()))
        fail(*full);
    return !m_isOver;
}

void RecordingSession::finish() {
    if (m_isOver)
        return;
    endParser();
    if (m_isOver)
        return;
    if (m_record.isOpen())
        closeFile();
    m_isOver = true;
}

void RecordingSession::fail(const RecordingError& error) {
    if (m_isOver)
        return;
    m_isOver = true;
    if (m_record.isOpen())
        closeFile();
    m_listener.failed(error);
}

RecordingProgress RecordingSession::progress() const {
    RecordingProgress progress;
    progress.song = m_song;
    progress.files = m_count;
    progress.sessionBytes = m_finishedBytes;
    if (m_record.isOpen()) {
        progress.path = m_record.recording().path();
        progress.fileBytes = m_record.bytes();
        progress.sessionBytes += progress.fileBytes;
        progress.fileDuration = m_record.duration();
    }
    m_space.tell(progress);
    return progress;
}

} // namespace BASS
