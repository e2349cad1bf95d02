#include "recording/stream_recorder.h"

#include "base/check.h"
#include "base/clock.h"
#include "base/log.h"
#include "recording/encoded_session.h"
#include "recording/mailbox.h"
#include "recording/recording_buffer.h"
#include "recording/recording_session.h"
#include "recording/session_publisher.h"
#include "recording/stream_header_keeper.h"

#include <QThread>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <variant>

namespace BASS {
namespace {

using std::chrono::milliseconds;

constexpr qint64 kMaxQueuedBytes = 64 * 1024 * 1024;
constexpr qint64 kFirstMark = 1024 * 1024;
constexpr qint64 kMegabyte = 1024 * 1024;
constexpr int kMaxBufferMegabytes = 1024;
constexpr int kBlockBytes = 65536; ///< small appends are gathered into blocks of this size
/// With the rest of the network thread and the time of gathering a byte is on the disk within a
/// second.
constexpr milliseconds kSyncInterval{500};
/// Where bytes come more often than twice in this time they gather for so long: a station sends up
/// to some hundred times a second.
constexpr milliseconds kGather{400};
constexpr int kProgressMs = 250;

struct StopItem {};
struct OverflowItem {};
/// `isStart`: no byte of the connection came before; else the recording joins it.
struct ConnectionItem {
    qint64 position = 0;
    QByteArray header;
    bool isStart = false;
};
struct StartItem {
    RecordingOptions options;
    Song song;
    std::unique_ptr<RecordingBuffer> buffer; ///< what comes first; null: nothing
    BufferStart from;
    std::optional<ConnectionItem> live; ///< the connection that stands at the buffer's end
    bool hasEnded = false;              ///< only what the buffer holds is wanted
    bool isEncoded = false;             ///< the bytes come from encoders
};
struct ConnectionEndItem {};
struct PauseItem {};
struct ResumeItem {
    qint64 position = 0;
    QByteArray header;
};
struct TrackItem {
    Song song;
    qint64 position = 0;
};
struct EncodedItem {
    std::function<void(EncodedSession&)> change;
    qint64 bytes = 0;
};
using Item = std::variant<StartItem,
                          EncodedItem,
                          StopItem,
                          OverflowItem,
                          ConnectionItem,
                          ConnectionEndItem,
                          PauseItem,
                          ResumeItem,
                          TrackItem,
                          QByteArray>;

} // namespace

struct StreamRecorder::Private {
    explicit Private(StreamRecorder& recorder) : owner(recorder), publisher(recorder, mailbox) {}

    // GUI thread
    void ensureThread();
    void endThread();

    // any thread, with the mutex held
    void put(Item item);
    void appendQueued(const char* data, qint64 bytes);
    [[nodiscard]] ConnectionItem joinItem() const;
    [[nodiscard]] PastStream pastStream(const Song& song, bool isWhole, qint64 decoded) const;
    void startSession(StartItem item);
    void appendBuffered(const char* data, qint64 bytes);
    [[nodiscard]] bool isBuffering() const { return !isFed && buffer != nullptr; }
    /// The user wants it, and there is one.
    [[nodiscard]] bool hasBuffer() const { return isBuffering() && bufferBytes > 0; }

    // writer thread
    void run();
    bool waitForItems(std::deque<Item>& items);
    void release(const std::deque<Item>& items);
    void handle(Item& item);
    void handleRaw(Item& item);
    void handleStart(StartItem& item);
    void feedBuffer(const StartItem& item);
    void feedMark(const RecordingBuffer& held, const RecordingBuffer::Mark& mark);
    void endSession();
    void afterBatch();

    StreamRecorder& owner;
    Mailbox mailbox;
    SessionPublisher publisher;
    SystemClock clock;
    int startedSessions = 0;  ///< GUI thread
    int finishedSessions = 0; ///< GUI thread

    std::mutex mutex; ///< guards what follows up to the thread
    std::condition_variable wake;
    std::deque<Item> queue;
    qint64 queuedBytes = 0;
    qint64 nextMark = kFirstMark;
    bool isFed = false; ///< a session wants the bytes
    bool isPaused = false;
    bool isThreadEnding = false;
    bool isGathering = false; ///< the writer sleeps on while only bytes and titles come
    milliseconds lastTaken{0};
    bool isConnected = false;
    qint64 fedBytes = 0;        ///< in all connections
    qint64 connectionStart = 0; ///< of fedBytes
    StreamHeaderKeeper keeper;
    int queuedSessions = 0;
    qint64 bufferBytes = 0; ///< 0: no buffer
    bool isTailKept = false;
    std::unique_ptr<RecordingBuffer> buffer;
    std::atomic<int> progressMs{kProgressMs};

    std::thread thread;

    // writer thread
    std::unique_ptr<WriterSession> session;
    RecordingSession* raw = nullptr; ///< the session, where it is one
    EncodedSession* encoded = nullptr;
    int takenSessions = 0;
    milliseconds lastSync{0};
    milliseconds lastProgress{0};
};

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

void StreamRecorder::Private::put(Item item) {
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

void StreamRecorder::Private::run() {
    std::deque<Item> items;
    while (waitForItems(items)) {
        for (Item& item : items)
            handle(item);
        release(items);
        items.clear();
        afterBatch();
    }
    endSession();
}

/// Waits for work, or until a running session is due for the disk. False: the thread ends.
bool StreamRecorder::Private::waitForItems(std::deque<Item>& items) {
    std::unique_lock<std::mutex> lock(mutex);
    const auto hasWork = [this] { return (!queue.empty() && !isGathering) || isThreadEnding; };
    if (isGathering) {
        wake.wait_for(lock, lastTaken + kGather - clock.steady(), hasWork);
        isGathering = false;
    }
    if (session)
        wake.wait_for(lock, kSyncInterval, hasWork);
    else
        wake.wait(lock, hasWork);
    const milliseconds now = clock.steady();
    isGathering = session && now - lastTaken < kGather / 2;
    lastTaken = now;
    items.swap(queue);
    return !items.empty() || !isThreadEnding;
}

/// Bytes count as waiting until they are dealt with.
void StreamRecorder::Private::release(const std::deque<Item>& items) {
    const std::lock_guard<std::mutex> lock(mutex);
    for (const Item& item : items) {
        if (const auto* const bytes = std::get_if<QByteArray>(&item))
            queuedBytes -= bytes->size();
        else if (const auto* const change = std::get_if<EncodedItem>(&item))
            queuedBytes -= change->bytes;
    }
}

void StreamRecorder::Private::handle(Item& item) {
    if (auto* const start = std::get_if<StartItem>(&item)) {
        handleStart(*start);
        return;
    }
    if (!session)
        return;
    if (const auto* const change = std::get_if<EncodedItem>(&item)) {
        if (encoded != nullptr)
            change->change(*encoded);
    } else if (std::holds_alternative<OverflowItem>(item)) {
        session->fail({RecordingErrorKind::CannotWrite,
                       recordingErrorText(RecordingErrorKind::CannotWrite),
                       StreamRecorder::tr("The disk is too slow for the stream.")});
    } else if (std::holds_alternative<StopItem>(item)) {
        session->finish();
    } else if (raw != nullptr) {
        handleRaw(item);
    }
    if (session->isOver())
        endSession();
}

void StreamRecorder::Private::handleRaw(Item& item) {
    if (auto* const bytes = std::get_if<QByteArray>(&item))
        raw->append(*bytes);
    else if (const auto* const track = std::get_if<TrackItem>(&item))
        raw->trackChanged(track->song, track->position);
    else if (const auto* const connection = std::get_if<ConnectionItem>(&item))
        raw->connectionBegan(connection->position, connection->header, connection->isStart);
    else if (std::holds_alternative<ConnectionEndItem>(item))
        raw->connectionEnded();
    else if (std::holds_alternative<PauseItem>(item))
        raw->pause();
    else if (const auto* const resume = std::get_if<ResumeItem>(&item))
        raw->resume(resume->position, resume->header);
}

void StreamRecorder::Private::handleStart(StartItem& item) {
    endSession();
    ++takenSessions;
    lastSync = lastProgress = clock.steady();
    publisher.begin(item.options);
    if (item.isEncoded) {
        auto made = std::make_unique<EncodedSession>(item.options, clock, publisher);
        encoded = made.get();
        session = std::move(made);
        return;
    }
    auto made =
        std::make_unique<RecordingSession>(item.options, std::move(item.song), clock, publisher);
    raw = made.get();
    session = std::move(made);
    if (item.buffer)
        feedBuffer(item);
    if (item.hasEnded)
        endSession();
}

/// What the buffer holds, in the order in which it came.
void StreamRecorder::Private::feedBuffer(const StartItem& item) {
    const RecordingBuffer& held = *item.buffer;
    qint64 at = item.from.position;
    qCInfo(lcRecording).noquote() << "Copying recording file=" << item.options.folder;
    qCInfo(lcRecording) << "Copying recording size=" << held.end() - at;
    if (item.from.awaited)
        raw->beginAt(*item.from.awaited);
    bool isJoined = false;
    const auto feedUpTo = [&](qint64 end) {
        if (at < end && !isJoined) {
            const QByteArray header = held.headerAt(at);
            const bool isLive = header.isEmpty() && item.live;
            raw->connectionBegan(at, isLive ? item.live->header : header, false);
            isJoined = true;
        }
        while (at < end && !raw->isOver()) {
            const QByteArray block = held.read(at, std::min<qint64>(kBlockBytes, end - at));
            qCDebug(lcRecording) << "Copying recording data bytes=" << block.size();
            raw->append(block);
            at += block.size();
        }
    };
    for (const RecordingBuffer::Mark& mark : held.marks()) {
        if (mark.position < at)
            continue;
        feedUpTo(mark.position);
        if (mark.event != RecordingBuffer::Event::Title)
            isJoined = mark.event == RecordingBuffer::Event::ConnectionBegan;
        feedMark(held, mark);
    }
    feedUpTo(held.end());
    if (item.live && !isJoined)
        raw->connectionBegan(item.live->position, item.live->header, item.live->isStart);
}

void StreamRecorder::Private::feedMark(const RecordingBuffer& held,
                                       const RecordingBuffer::Mark& mark) {
    if (mark.event == RecordingBuffer::Event::Title)
        raw->trackChanged(mark.song, mark.position);
    else if (mark.event == RecordingBuffer::Event::ConnectionEnded)
        raw->connectionEnded();
    else
        raw->connectionBegan(mark.position,
                             mark.isStart ? QByteArray() : held.headerAt(mark.position),
                             mark.isStart);
}

void StreamRecorder::Private::endSession() {
    if (!session)
        return;
    session->finish();
    session->close();
    const QStringList paths = session->paths();
    raw = nullptr;
    encoded = nullptr;
    session.reset();
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isFed = isFed && queuedSessions > takenSessions;
    }
    publisher.finish([this, paths] {
        ++finishedSessions;
        emit owner.sig_finished(paths);
    });
}

void StreamRecorder::Private::afterBatch() {
    if (!session)
        return;
    const milliseconds now = clock.steady();
    if (now - lastSync >= kSyncInterval) {
        session->sync();
        lastSync = now;
    } else {
        session->flush();
    }
    if (session->isOver()) {
        endSession();
        return;
    }
    if (now - lastProgress < milliseconds(progressMs.load()))
        return;
    lastProgress = now;
    const RecordingProgress progress = session->progress();
    if (!progress.path.isEmpty())
        mailbox.post([this, progress] { emit owner.sig_progress(progress); });
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
    for (const RecordingBuffer::Mark* const mark : titles) {
        if (mark->position + shift <= past.begin) {
            past.song = mark->song;
            continue;
        }
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
