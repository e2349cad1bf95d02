#include "recording/stream_recorder.h"

#include "base/check.h"
#include "base/log.h"
#include "recording/stream_recorder_private.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

using std::chrono::milliseconds;

constexpr qint64 kMaxQueuedBytes = 64 * 1024 * 1024;
constexpr qint64 kMegabyte = 1024 * 1024;
constexpr int kMaxBufferMegabytes = 1024;

} // namespace

void StreamRecorder::Private::ensureThread() {
    if (!thread.joinable())
        thread = std::thread([this] { run(); });
}

void StreamRecorder::Private::endThread() {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isThreadEnding = true;
    }
    wake.notify_one();
    if (thread.joinable())
        thread.join();
    isThreadEnding = false;
    publisher.wait();
}

void StreamRecorder::Private::put(RecorderItem item) {
    const bool canGather = std::holds_alternative<QByteArray>(item) ||
                           std::holds_alternative<EncodedItem>(item) ||
                           std::holds_alternative<TrackItem>(item);
    queue.push_back(std::move(item));
    if (isGathering && canGather && queuedBytes < kFirstMark)
        return;
    isGathering = false;
    wake.notify_one();
}

void StreamRecorder::Private::appendQueued(const char* data, qint64 bytes) {
    if (queuedBytes + bytes > kMaxQueuedBytes) {
        // a disk that stands still must not take the memory with it
        isFed = false;
        put(OverflowItem{});
        return;
    }
    queuedBytes += bytes;
    if (queuedBytes > nextMark) {
        qCWarning(lcRecording) << "StreamRecorder::append the disk is slow, waiting bytes="
                               << queuedBytes;
        nextMark *= 2;
    }
    auto* const block = queue.empty() ? nullptr : std::get_if<QByteArray>(&queue.back());
    if (block != nullptr && block->size() + bytes <= kBlockBytes)
        block->append(data, static_cast<int>(bytes));
    else
        put(QByteArray(data, static_cast<int>(bytes)));
}

/// The buffer is made when there is something to keep; it goes into the recording that starts.
void StreamRecorder::Private::appendBuffered(const char* data, qint64 bytes) {
    const qint64 wanted = bufferBytes > 0 ? bufferBytes : isTailKept ? kMegabyte : 0;
    if (wanted == 0)
        return;
    if (!buffer) {
        buffer = std::make_unique<RecordingBuffer>(wanted, fedBytes - bytes);
        buffer->connectionBegan(fedBytes - bytes == connectionStart);
    }
    buffer->append(data, bytes);
}

void StreamRecorder::Private::startSession(StartItem item) {
    ensureThread();
    ++startedSessions;
    ++queuedSessions;
    put(std::move(item));
}

ConnectionItem StreamRecorder::Private::joinItem() const {
    const bool isStart = fedBytes == connectionStart;
    return {fedBytes, isStart ? QByteArray() : keeper.header(), isStart};
}

StreamRecorder::StreamRecorder(QObject* parent)
    : QObject(parent), m_private(std::make_unique<Private>(*this)) {
    qRegisterMetaType<BASS::Song>();
    qRegisterMetaType<BASS::RecordedFile>();
    qRegisterMetaType<BASS::RecordingError>();
    qRegisterMetaType<BASS::RecordingProgress>();
}

StreamRecorder::~StreamRecorder() {
    stopAndWait();
}

void StreamRecorder::start(const RecordingOptions& options, const Song& song) {
    WL_CHECK(QThread::currentThread() == thread());
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    StartItem item;
    item.options = options;
    item.song = song;
    const bool hasBuffer = m_private->hasBuffer();
    if (hasBuffer) {
        item.from = planBufferStart(*m_private->buffer, song, options.mode == RecordMode::NoSplit);
        const Song opening = openingSong(*m_private->buffer, item.from.position);
        if (!opening.isEmpty()) // the running one is not what ran then
            item.song = options.mode == RecordMode::NoSplit ? opening : Song();
        item.buffer = std::move(m_private->buffer);
        if (m_private->isConnected)
            item.live = m_private->joinItem();
    }
    m_private->startSession(std::move(item));
    m_private->buffer.reset();
    m_private->isFed = true;
    m_private->isPaused = false;
    // a buffer ends within the connection that stands
    if (m_private->isConnected && !hasBuffer)
        m_private->put(m_private->joinItem());
}

void StreamRecorder::setProgressInterval(milliseconds interval) {
    m_private->progressMs.store(static_cast<int>(interval.count()));
}

PastStream
StreamRecorder::Private::pastStream(const Song& song, bool isWhole, qint64 decoded) const {
    PastStream past;
    if (isFed || !buffer || !isConnected)
        return past;
    constexpr qint64 kMostBytes = 24 * 1024 * 1024; // what a decoder's buffer takes at once
    constexpr qint64 kLeadBytes = 65536;
    BufferStart from;
    if (bufferBytes > 0)
        from = planBufferStart(*buffer, song, isWhole);
    else
        from.position = connectionStart + decoded - kLeadBytes;
    const qint64 first =
        std::max({from.position, connectionStart, buffer->first(), buffer->end() - kMostBytes});
    const QByteArray header = first > connectionStart ? keeper.header() : QByteArray();
    const qint64 shift = header.size() - first;
    past.bytes = header + buffer->read(first, buffer->end() - first);
    past.begin = header.size();
    if (bufferBytes == 0)
        past.begin = std::max<qint64>(past.begin, connectionStart + decoded + shift);
    past.song = song;
    past.end = buffer->end();
    past.connectionOffset = connectionStart + shift;
    std::vector<const RecordingBuffer::Mark*> titles;
    for (const RecordingBuffer::Mark& mark : buffer->marks()) {
        if (mark.event != RecordingBuffer::Event::Title || mark.position < first)
            continue;
        titles.push_back(&mark);
        if (from.awaited && mark.song.track == from.awaited->track) // the newest of that name
            past.begin = mark.position + shift;
    }
    const Song opening = openingSong(*buffer, past.begin - shift);
    if (!opening.isEmpty())
        past.song = opening;
    for (const RecordingBuffer::Mark* const mark : titles) {
        if (mark->position + shift <= past.begin) {
            past.song = mark->song;
            continue;
        }
        const bool isTold = past.titles.empty() && mark->song.track == opening.track;
        if (isTold && !opening.isEmpty())
            continue;
        past.titles.push_back(mark->song);
        past.titles.back().position = mark->position - connectionStart;
    }
    return past;
}

PastStream
StreamRecorder::startEncoded(const RecordingOptions& options, const Song& song, qint64 decoded) {
    WL_CHECK(QThread::currentThread() == thread());
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    StartItem item;
    item.options = options;
    item.isEncoded = true;
    m_private->startSession(std::move(item));
    return m_private->pastStream(song, options.mode == RecordMode::NoSplit, decoded);
}

void StreamRecorder::feedEncoded(std::function<void(EncodedSession&)> change, qint64 bytes) {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    if (m_private->queuedBytes + bytes > kMaxQueuedBytes) {
        m_private->put(OverflowItem{});
        return;
    }
    m_private->queuedBytes += bytes;
    m_private->put(EncodedItem{std::move(change), bytes});
}

bool StreamRecorder::keepLastTitle(const RecordingOptions& options, const Song& running) {
    WL_CHECK(QThread::currentThread() == thread());
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    if (!m_private->hasBuffer())
        return false;
    const auto from = planLastTitle(*m_private->buffer, running);
    StartItem item;
    if (from)
        item.buffer = m_private->buffer->copyFrom(from->position);
    if (!item.buffer)
        return false;
    item.from = *from;
    item.options = options;
    item.options.mode = RecordMode::SingleSong;
    if (m_private->isConnected)
        item.live = m_private->joinItem();
    item.hasEnded = true;
    m_private->startSession(std::move(item));
    return true;
}

void StreamRecorder::setTailKept(bool isKept) {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    m_private->isTailKept = isKept;
}

void StreamRecorder::setBufferSize(int megabytes) {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    const qint64 bytes = std::clamp(megabytes, 0, kMaxBufferMegabytes) * kMegabyte;
    if (bytes == m_private->bufferBytes)
        return;
    m_private->bufferBytes = bytes;
    m_private->buffer.reset();
}

void StreamRecorder::stop() {
    if (!m_private->thread.joinable())
        return;
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    m_private->isFed = false;
    m_private->put(StopItem{});
}

void StreamRecorder::stopAndWait() {
    stop();
    m_private->endThread();
}

void StreamRecorder::setCover(const QString& track, const QByteArray& picture) {
    m_private->publisher.setCover(track, picture);
}

bool StreamRecorder::isRunning() const {
    return m_private->startedSessions > m_private->finishedSessions;
}

void StreamRecorder::setPaused(bool isPaused) {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    if (!m_private->isFed || m_private->isPaused == isPaused)
        return;
    m_private->isPaused = isPaused;
    if (isPaused)
        m_private->put(PauseItem{});
    else
        m_private->put(ResumeItem{m_private->fedBytes, m_private->keeper.header()});
}

void StreamRecorder::connectionBegan() {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    m_private->isConnected = true;
    m_private->connectionStart = m_private->fedBytes;
    m_private->keeper.reset();
    if (m_private->isFed)
        m_private->put(m_private->joinItem());
    else if (m_private->isBuffering())
        m_private->buffer->connectionBegan(true);
}

qint64 StreamRecorder::append(const char* data, qint64 bytes) {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    m_private->fedBytes += bytes;
    m_private->keeper.push(data, static_cast<qsizetype>(bytes));
    if (m_private->isFed && !m_private->isPaused)
        m_private->appendQueued(data, bytes);
    else if (!m_private->isFed)
        m_private->appendBuffered(data, bytes);
    return m_private->fedBytes;
}

void StreamRecorder::trackChanged(const Song& song) {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    const qint64 position =
        song.position >= 0 ? m_private->connectionStart + song.position : m_private->fedBytes;
    if (m_private->isFed)
        m_private->put(TrackItem{song, position});
    else if (m_private->isBuffering())
        m_private->buffer->addTitle(song, position);
}

void StreamRecorder::connectionEnded() {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    m_private->isConnected = false;
    if (m_private->isFed)
        m_private->put(ConnectionEndItem{});
    else if (m_private->isBuffering())
        m_private->buffer->connectionEnded(m_private->keeper.header());
}

void StreamRecorder::clearBuffer() {
    const std::lock_guard<std::mutex> lock(m_private->mutex);
    if (m_private->buffer)
        m_private->buffer->clear();
}

} // namespace BASS
