#pragma once

#include "audio/audio_library.h"

#include <QByteArray>

#include <mutex>
#include <vector>

namespace BASS {

/// Where the bytes of a connection go. Called by one thread at a time, usually the library's
/// network thread; must not block.
class StreamSink {
  public:
    virtual ~StreamSink() = default;
    /// Header lines, each zero-terminated, ended by an empty one.
    virtual void connectionBegan(const char* headers) = 0;
    virtual void audioBytes(const char* data, qint64 bytes) = 0;
    virtual void titleArrived(const StreamTitle& title) = 0;
    virtual void connectionEnded() = 0;
};

/// Holds back what a connection delivers until it is known to be a playable one: an error page or a
/// failed try must never reach a recording, and the first byte of a good one must not be lost.
/// Thread: any; calls are put in order by a lock that is free but for the moment of release.
class HeldSink final : public StreamSink {
  public:
    explicit HeldSink(StreamSink& target) : m_target(&target) {}

    void connectionBegan(const char* headers) override;
    void audioBytes(const char* data, qint64 bytes) override;
    void titleArrived(const StreamTitle& title) override;
    void connectionEnded() override;

    /// Everything held goes on to the target, and so does all that follows.
    void release();
    /// What is held was not worth anything.
    void discard();
    /// From now on nothing reaches the target.
    void detach();

  private:
    enum class Kind { Began, Bytes, Title, Ended };
    struct Item {
        Kind kind;
        QByteArray data;
        QWORD position = 0;
        DWORD tagType = 0;
    };

    void take(Item item);
    void pass(const Item& item);

    std::mutex m_mutex; ///< guards all below
    StreamSink* m_target;
    bool m_isReleased = false;
    qint64 m_heldBytes = 0;
    std::vector<Item> m_held;
};

} // namespace BASS
