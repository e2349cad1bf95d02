#include "recording/encoded_session.h"

#include "base/log.h"
#include "recording/c_encoder_params.h"
#include "recording/encoder_output.h"
#include "recording/recording_path.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace BASS {
namespace {

std::chrono::milliseconds inMilliseconds(double seconds) {
    return std::chrono::milliseconds(std::llround(seconds * 1000.0));
}

} // namespace

EncodedSession::EncodedSession(RecordingOptions options,
                               const Clock& clock,
                               RecordingListener& listener)
    : m_options(std::move(options)), m_clock(clock), m_listener(listener),
      m_space(m_options.folder, m_options.minFreeBytes) {
    m_log.station = m_options.station.station;
    m_log.address = m_options.address;
    m_log.started = m_clock.now();
}

EncodedSession::~EncodedSession() {
    close();
}

void EncodedSession::beginFile(quint32 encoder, const Song& song) {
    if (m_isOver)
        return;
    File& file = m_files[encoder];
    if (file.recording.isOpen())
        return;
    file.song = song;
    file.isNamed = true;
    openIfReady(file, false);
}

void EncodedSession::append(quint32 encoder, const QByteArray& bytes) {
    if (m_isOver)
        return;
    File& file = m_files[encoder];
    if (!file.recording.isOpen()) {
        if (file.waiting.isEmpty()) {
            file.started = m_clock.now();
            file.startedAt = m_clock.steady();
        }
        file.waiting += bytes;
        openIfReady(file, false);
        return;
    }
    file.recording.append(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                          static_cast<std::size_t>(bytes.size()));
    check(file);
}

/// An external program may write anything. What no player could open makes no file.
void EncodedSession::openIfReady(File& file, bool isEnd) {
    if (!file.isNamed || file.waiting.isEmpty())
        return;
    const EncoderOutput output = encoderOutput(m_options.encoder, file.waiting, isEnd);
    if (output == EncoderOutput::Foreign)
        fail({RecordingErrorKind::EncoderStopped,
              recordingErrorText(RecordingErrorKind::EncoderStopped),
              QCoreApplication::translate(
                  "BASS::EncodedSession",
                  "What the encoder gives out is not the audio it should be.")});
    if (output == EncoderOutput::Audio)
        open(file);
}

void EncodedSession::open(File& file) {
    if (const auto full = m_space.check(m_clock.steady())) {
        fail(*full);
        return;
    }
    const QString extension = encoderExtension(m_options.encoder, false);
    const bool isOpen = file.recording.open(
        freeRecordingPath(m_options, file.song, file.started, extension, m_path));
    const QString path = file.recording.path();
    if (!isOpen) {
        qCWarning(lcRecording).noquote()
            << "Output File:" << path << file.recording.failure()->detail;
        check(file);
        return;
    }
    m_path = path;
    ++m_count;
    m_log.tracks.append({file.song, file.started, path, {}});
    m_listener.fileOpened(path, file.song);
    if (!file.song.isEmpty())
        m_listener.titleRecorded(m_log.tracks.last());
    for (SessionLog::Track& track : file.titles) {
        track.path = path;
        addTitle(track);
    }
    for (RecordingGap& gap : file.gaps) {
        gap.path = path;
        m_log.gaps.append(gap);
    }
    m_listener.logChanged(m_log);
    const QByteArray waiting = std::exchange(file.waiting, {});
    file.recording.append(reinterpret_cast<const std::uint8_t*>(waiting.constData()),
                          static_cast<std::size_t>(waiting.size()));
    check(file);
}

void EncodedSession::addTitle(const SessionLog::Track& track) {
    m_listener.titleRecorded(track);
    if (m_options.hasTrackList) // else nobody asks again, and the file may go on for weeks
        m_log.tracks.append(track);
}

void EncodedSession::rewrite(quint32 encoder, qint64 offset, const QByteArray& bytes) {
    const auto found = m_files.find(encoder);
    if (m_isOver || found == m_files.end())
        return;
    File& file = found->second;
    if (!file.recording.isOpen()) {
        if (offset >= 0 && offset + bytes.size() <= file.waiting.size())
            file.waiting.replace(static_cast<int>(offset), bytes.size(), bytes);
        return;
    }
    file.recording.rewrite(offset,
                           reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                           static_cast<std::size_t>(bytes.size()));
    check(file);
}

void EncodedSession::endFile(quint32 encoder, bool hasFailed) {
    const auto found = m_files.find(encoder);
    if (found != m_files.end()) {
        auto file = m_files.extract(found); // a failure to write closes all the others
        closeFile(file.mapped());
    }
    if (hasFailed)
        fail({RecordingErrorKind::EncoderStopped,
              recordingErrorText(RecordingErrorKind::EncoderStopped),
              {}});
    m_isOver = m_isOver || (m_isFinishing && m_files.empty());
}

void EncodedSession::closeFile(File& file) {
    if (!file.recording.isOpen() && !file.recording.failure())
        openIfReady(file, true); // a song shorter than it takes to tell
    if (!file.recording.isOpen())
        return;
    file.recording.flush();
    RecordedFile finished;
    finished.path = file.recording.path();
    finished.song = file.song;
    finished.bytes = file.recording.size();
    finished.duration = duration(file);
    finished.started = file.started;
    finished.comment = recordingComment(m_log, finished.path);
    const auto failure = file.recording.failure();
    file.recording.close();
    m_finishedBytes += finished.bytes;
    m_log.files.append({finished.path, finished.duration, finished.bytes});
    if (finished.bytes > 0) {
        m_listener.fileFinished(finished);
    } else {
        --m_count;
        m_path.clear();
    }
    m_listener.logChanged(m_log);
    if (!m_options.hasTrackList)
        m_log.forget(finished.path); // nobody asks again, and a recording may go on for weeks
    if (failure)
        fail(*failure);
}

void EncodedSession::close() {
    m_isOver = true;
    while (!m_files.empty()) {
        auto file = m_files.extract(m_files.begin());
        closeFile(file.mapped());
    }
}

void EncodedSession::check(const File& file) {
    if (file.recording.failure())
        fail(RecordingError(*file.recording.failure()));
}

void EncodedSession::tellSeconds(quint32 encoder, double seconds) {
    const auto found = m_files.find(encoder);
    if (found != m_files.end() && seconds >= 0)
        found->second.encoded = inMilliseconds(seconds);
}

void EncodedSession::noteTitle(const Song& song, double seconds) {
    File* const file = newest([](const File& one) { return one.isNamed; });
    if (m_isOver || file == nullptr)
        return;
    const auto at = seconds < 0 ? duration(*file) : inMilliseconds(seconds);
    const SessionLog::Track track{song, m_clock.now(), file->recording.path(), at};
    if (!file->recording.isOpen()) {
        file->titles.append(track);
        return;
    }
    addTitle(track);
    m_listener.logChanged(m_log);
}

void EncodedSession::connectionLost() {
    m_lostAt = m_clock.now();
}

void EncodedSession::connectionBack() {
    const QDateTime from = std::exchange(m_lostAt, {});
    if (!from.isValid())
        return;
    RecordingGap gap;
    gap.from = from;
    gap.to = m_clock.now();
    if (const File* const file = newest([](const File& one) { return one.recording.isOpen(); })) {
        gap.bytes = file->recording.size();
        gap.at = duration(*file);
        gap.path = file->recording.path();
        m_log.gaps.append(gap);
        m_listener.logChanged(m_log);
    } else if (File* const coming = newest([](const File& one) { return one.isNamed; })) {
        coming->gaps.append(gap); // at its beginning
    }
}

void EncodedSession::flush() {
    for (auto& file : m_files)
        file.second.recording.flush();
}

void EncodedSession::sync() {
    for (auto& file : m_files) {
        if (file.second.recording.isOpen())
            file.second.recording.sync();
        if (file.second.recording.failure()) {
            check(file.second);
            return;
        }
    }
    if (const auto full = m_space.check(m_clock.steady()))
        fail(*full);
}

void EncodedSession::finish() {
    m_isFinishing = true;
    m_isOver = m_isOver || m_files.empty();
}

void EncodedSession::fail(const RecordingError& error) {
    if (m_isOver)
        return;
    m_isOver = true;
    const RecordingError reason = error; // the file that it came from goes now
    close();
    m_listener.failed(reason);
}

std::chrono::milliseconds EncodedSession::duration(const File& file) const {
    if (file.encoded)
        return *file.encoded;
    // such a library encodes audio as fast as it is heard
    return m_clock.steady() - file.startedAt;
}

EncodedSession::File* EncodedSession::newest(bool (*isWanted)(const File& file)) {
    const auto found = std::find_if(m_files.rbegin(), m_files.rend(), [isWanted](const auto& file) {
        return isWanted(file.second);
    });
    return found != m_files.rend() ? &found->second : nullptr;
}

RecordingProgress EncodedSession::progress() const {
    RecordingProgress progress;
    progress.files = m_count;
    progress.sessionBytes = m_finishedBytes;
    for (const auto& [encoder, file] : m_files) {
        if (!file.recording.isOpen())
            continue;
        progress.path = file.recording.path();
        progress.song = file.song;
        progress.fileBytes = file.recording.size();
        progress.sessionBytes += progress.fileBytes;
        progress.fileDuration = duration(file);
    }
    m_space.tell(progress);
    return progress;
}

} // namespace BASS
