#pragma once

#include <QtGlobal>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace BASS {

/// Carries out jobs one after the other on a thread of its own, which is there as long as there
/// may be jobs.
///
/// *Thread*: post() from one thread at a time, finish() when nobody posts. *Life*: after finish()
/// it may be used again. Destroying it carries out what waits.
class BackgroundQueue final {
    Q_DISABLE_COPY_MOVE(BackgroundQueue)

  public:
    BackgroundQueue() = default;
    ~BackgroundQueue() { finish(); }

    void post(std::function<void()> job);
    /// Waits until every job is done and the thread has ended.
    void finish();

  private:
    void run();

    std::mutex m_mutex; ///< guards m_jobs and m_isEnding
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_jobs;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace BASS
