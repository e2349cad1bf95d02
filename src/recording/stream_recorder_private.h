#pragma once

#include "base/clock.h"
#include "recording/encoded_session.h"
#include "recording/mailbox.h"
#include "recording/recording_buffer.h"
#include "recording/recording_session.h"
#include "recording/session_publisher.h"
#include "recording/stream_header_keeper.h"
#include "recording/stream_recorder.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <variant>

// What StreamRecorder consists of: a queue that any thread fills, and the writer's thread.

namespace BASS {

constexpr qint64 kFirstMark = 1024 * 1024;
constexpr int kBlockBytes = 65536; ///< small appends are gathered into blocks of this size
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
using RecorderItem = std::variant<StartItem,
                                  EncodedItem,
                                  StopItem,
                                  OverflowItem,
                                  ConnectionItem,
                                  ConnectionEndItem,
                                  PauseItem,
                                  ResumeItem,
                                  TrackItem,
                                  QByteArray>;

struct StreamRecorder::Private {
    explicit Private(StreamRecorder& recorder) : owner(recorder), publisher(recorder, mailbox) {}

    // GUI thread
    void ensureThread();
    void endThread();

    // any thread, with the mutex held
    void put(RecorderItem item);
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
    bool waitForItems(std::deque<RecorderItem>& items);
    void release(const std::deque<RecorderItem>& items);
    void handle(RecorderItem& item);
    void handleRaw(RecorderItem& item);
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
    std::deque<RecorderItem> queue;
    qint64 queuedBytes = 0;
    qint64 nextMark = kFirstMark;
    bool isFed = false; ///< a session wants the bytes
    bool isPaused = false;
    bool isThreadEnding = false;
    bool isGathering = false; ///< the writer sleeps on while only bytes and titles come
    std::chrono::milliseconds lastTaken{0};
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
    std::chrono::milliseconds lastSync{0};
    std::chrono::milliseconds lastProgress{0};
};

} // namespace BASS
