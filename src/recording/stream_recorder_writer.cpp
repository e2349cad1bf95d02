#include "base/log.h"
#include "recording/stream_recorder_private.h"

#include <algorithm>
#include <utility>

// The writer's thread of StreamRecorder.

namespace BASS {
namespace {

using std::chrono::milliseconds;

/// With the rest of the network thread and the time of gathering a byte is on the disk within a
/// second.
constexpr milliseconds kSyncInterval{500};
/// Where bytes come more often than twice in this time they gather for so long: a station sends up
/// to some hundred times a second.
constexpr milliseconds kGather{300};

} // namespace

void StreamRecorder::Private::run() {
    std::deque<RecorderItem> items;
    while (waitForItems(items)) {
        for (RecorderItem& item : items)
            handle(item);
        release(items);
        items.clear();
        afterBatch();
    }
    endSession();
}

/// Waits for work, or until a running session is due for the disk. False: the thread ends.
bool StreamRecorder::Private::waitForItems(std::deque<RecorderItem>& items) {
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
void StreamRecorder::Private::release(const std::deque<RecorderItem>& items) {
    const std::lock_guard<std::mutex> lock(mutex);
    for (const RecorderItem& item : items) {
        if (const auto* const bytes = std::get_if<QByteArray>(&item))
            queuedBytes -= bytes->size();
        else if (const auto* const change = std::get_if<EncodedItem>(&item))
            queuedBytes -= change->bytes;
    }
}

void StreamRecorder::Private::handle(RecorderItem& item) {
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

void StreamRecorder::Private::handleRaw(RecorderItem& item) {
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
    raw = nullptr;
    encoded = nullptr;
    session.reset();
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isFed = isFed && queuedSessions > takenSessions;
    }
    publisher.finish([this] {
        ++finishedSessions;
        emit owner.sig_finished();
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

} // namespace BASS
