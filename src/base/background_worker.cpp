#include "base/background_worker.h"

#include <utility>

BackgroundWorker::~BackgroundWorker() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void BackgroundWorker::post(std::function<void()> job) {
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
    m_wake.notify_one();
}

void BackgroundWorker::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_isStopping || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        {
            const std::function<void()> job = std::move(m_jobs.front());
            m_jobs.pop_front();
            lock.unlock();
            job();
        }
        lock.lock();
    }
}
