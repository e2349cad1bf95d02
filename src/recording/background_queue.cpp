#include "recording/background_queue.h"

#include <utility>

namespace BASS {

void BackgroundQueue::post(std::function<void()> job) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
        m_isEnding = false;
    }
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
    m_wake.notify_one();
}

void BackgroundQueue::finish() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void BackgroundQueue::run() {
    for (;;) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_wake.wait(lock, [this] { return !m_jobs.empty() || m_isEnding; });
        if (m_jobs.empty())
            return;
        const std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
    }
}

} // namespace BASS
