#include "audio/callback_gate.h"

#include <algorithm>

namespace BASS {

bool CallbackGate::enter() {
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return false;
    m_inside.push_back(std::this_thread::get_id());
    return true;
}

void CallbackGate::leave() {
    const std::lock_guard lock(m_mutex);
    m_inside.erase(std::find(m_inside.begin(), m_inside.end(), std::this_thread::get_id()));
    m_left.notify_all();
}

void CallbackGate::close() {
    std::unique_lock lock(m_mutex);
    m_isClosed = true;
    const auto self = std::this_thread::get_id();
    m_left.wait(lock, [this, self] {
        return std::all_of(
            m_inside.begin(), m_inside.end(), [self](std::thread::id id) { return id == self; });
    });
}

} // namespace BASS
