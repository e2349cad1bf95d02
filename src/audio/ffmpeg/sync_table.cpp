#include "audio/ffmpeg/sync_table.h"

#include <algorithm>

namespace BASS {
namespace {

std::atomic<HSYNC> nextHandle{0x1000};

} // namespace

HSYNC SyncTable::add(DWORD type, QWORD param, SYNCPROC* proc, void* user) {
    const bool isOneTime = (type & BASS_SYNC_ONETIME) != 0;
    const HSYNC handle = nextHandle.fetch_add(1);
    const std::lock_guard lock(m_mutex);
    m_syncs.push_back({handle, type & ~BASS_SYNC_ONETIME, isOneTime, param, proc, user});
    return handle;
}

bool SyncTable::remove(HSYNC handle) {
    const std::lock_guard lock(m_mutex);
    const auto place = std::find_if(m_syncs.begin(), m_syncs.end(), [handle](const Sync& sync) {
        return sync.handle == handle;
    });
    if (place == m_syncs.end())
        return false;
    m_syncs.erase(place);
    return true;
}

bool SyncTable::take(HSYNC handle, Sync& sync) {
    const std::lock_guard lock(m_mutex);
    const auto place = std::find_if(m_syncs.begin(), m_syncs.end(), [handle](const Sync& each) {
        return each.handle == handle;
    });
    if (place == m_syncs.end())
        return false; // removed by a callback before it
    sync = *place;
    if (sync.isOneTime)
        m_syncs.erase(place);
    return true;
}

bool SyncTable::has(DWORD type) {
    const std::lock_guard lock(m_mutex);
    return std::any_of(
        m_syncs.begin(), m_syncs.end(), [type](const Sync& sync) { return sync.type == type; });
}

void SyncTable::fire(DWORD type, DWORD data) {
    fireFor(type, 0, data);
}

void SyncTable::fireFor(DWORD type, QWORD param, DWORD data) {
    std::vector<HSYNC> handles;
    {
        const std::lock_guard lock(m_mutex);
        for (const Sync& sync : m_syncs)
            if (sync.type == type && (param == 0 || sync.param == 0 || sync.param == param))
                handles.push_back(sync.handle);
    }
    for (const HSYNC handle : handles) {
        const CallbackGate::Pass pass(m_gate);
        Sync sync{};
        if (pass && take(handle, sync))
            sync.proc(handle, m_channel, data, sync.user);
    }
}

} // namespace BASS
