#pragma once

#include "audio/audio_library.h"
#include "audio/bass/bass_effects.h"
#include "audio/bass/bass_functions.h"
#include "audio/bass/token_table.h"
#include "audio/callback_gate.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace BASS {

/// A stream as this provider knows it: whom its callbacks go to. Any thread.
struct BassStream {
    const BassFunctions* bass = nullptr;
    DOWNLOADPROC* download = nullptr;
    TITLEPROC* title = nullptr;
    void* user = nullptr;
    std::atomic<HSTREAM> handle{0}; ///< 0 while it is being made
    std::atomic<bool> isCanceled{false};
    std::mutex order; ///< one download or title call at a time
    CallbackGate gate;
    std::unique_ptr<BassEffects> effects; ///< made once, before the library is given its function
};

/// A sync that the engine has set.
struct BassSync {
    SYNCPROC* proc = nullptr;
    void* user = nullptr;
    DWORD channel = 0;
    bool isOneTime = false;
    std::atomic<HSYNC> sync{0};
    std::shared_ptr<BassStream> stream; ///< null: not one of this provider's
};

/// The user pointers of the process: the library's callbacks carry nothing else.
TokenTable<BassStream>& bassStreams();
TokenTable<BassSync>& bassSyncs();

// What the library calls; `user` is a token of the tables above.
void BASS_CALL onBassDownload(const void* buffer, DWORD length, void* user);
void BASS_CALL onBassTitle(HSYNC sync, DWORD channel, DWORD data, void* user);
void BASS_CALL onBassSync(HSYNC sync, DWORD channel, DWORD data, void* user);
void BASS_CALL onBassFreed(HSYNC sync, DWORD channel, DWORD data, void* user);

/// Hands the title that the library shows now to the stream's TITLEPROC.
/// position: audio bytes before it.
void passBassTitle(BassStream& stream, DWORD tagType, QWORD position);

} // namespace BASS
