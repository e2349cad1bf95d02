#pragma once

#include "audio/audio_encoding.h"
#include "audio/bass/bass_functions.h"
#include "base/background_worker.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace BASS {

struct BassEncoder;

/// The closed library's encoders under the contract of AudioEncoding: each one's end is told, a cut
/// goes over to a second encoder, bytes that belong further ahead come as rewrites.
///
/// *Thread*: any. *Owner*: BassLibrary. *Life*: the destructor stops every encoder and waits for
/// its last call. The library's own stop call may encode what is queued and call back before it
/// returns, so it runs on a thread of this object, never on the caller's.
class BassEncoders final {
  public:
    enum class Kind { Mp3, Ogg, Flac, Program };
    struct Start {
        Kind kind;
        DWORD channel;
        std::u16string text; ///< options or a command line
        DWORD flags;
        ENCODEPROC* proc;
        void* user;
    };

    explicit BassEncoders(const BassFunctions& bass);
    ~BassEncoders();
    BassEncoders(const BassEncoders&) = delete;
    BassEncoders& operator=(const BassEncoders&) = delete;

    HENCODE start(const Start& start);
    DWORD isActive(DWORD handle) const;
    /// handle: an encoder, or a channel for all of its encoders. Returns at once.
    bool stop(DWORD handle, bool queue);
    bool setChannel(HENCODE handle, DWORD channel);
    HENCODE cutAt(HENCODE old, DWORD delayMs, ENCODEPROC* proc, void* user);
    /// Stops the channel's encoders and waits for their last calls.
    void endChannel(DWORD channel);
    void setRewriteProc(ENCODEREWRITEPROC* proc) { m_rewriteProc.store(proc); }

    // From the library's threads.
    void bytesCame(BassEncoder& encoder, HENCODE handle, const void* data, DWORD size);
    void
    bytesCameAt(BassEncoder& encoder, HENCODE handle, const void* data, DWORD size, QWORD offset);
    void isGone(const std::shared_ptr<BassEncoder>& encoder, bool hasFailed);
    void cutReached(BassEncoder& next);

  private:
    using Encoder = std::shared_ptr<BassEncoder>;
    Encoder find(HENCODE handle) const;
    std::vector<Encoder> encodersOf(DWORD handle) const;
    HENCODE callStart(const Start& start, void* token) const;
    bool setCutSync(BassEncoder& next, DWORD delayMs) const;
    void post(const Encoder& encoder, bool queue);
    void finish(BassEncoder& encoder, bool queue);
    void waitUntilGone(BassEncoder& encoder);

    const BassFunctions& m_bass;
    std::atomic<ENCODEREWRITEPROC*> m_rewriteProc{nullptr};
    mutable std::mutex m_mutex; ///< guards which encoder follows which, and the ends
    std::condition_variable m_ended;
    BackgroundWorker m_worker;
};

} // namespace BASS
