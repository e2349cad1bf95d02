#pragma once

#include "audio/audio_library.h"
#include "audio/callback_gate.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace BASS {

/// The callbacks that wait for events of one channel. *Thread*: any; fire() on the dispatcher's
/// only, and no lock is held while a callback runs.
class SyncTable {
  public:
    explicit SyncTable(DWORD channel) : m_channel(channel) {}

    HSYNC add(DWORD type, QWORD param, SYNCPROC* proc, void* user);
    bool remove(HSYNC handle);
    void fire(DWORD type, DWORD data);
    [[nodiscard]] bool has(DWORD type);
    /// BASS_SYNC_SLIDE's parameter names an attribute: only syncs for it (or for all, 0) are
    /// called.
    void fireFor(DWORD type, QWORD param, DWORD data);
    /// No callback runs or begins after it returned.
    void close() { m_gate.close(); }

  private:
    struct Sync {
        HSYNC handle;
        DWORD type;
        bool isOneTime;
        QWORD param;
        SYNCPROC* proc;
        void* user;
    };

    bool take(HSYNC handle, Sync& sync);

    const DWORD m_channel;
    CallbackGate m_gate;
    std::mutex m_mutex; ///< guards m_syncs
    std::vector<Sync> m_syncs;
};

} // namespace BASS
