#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// Carries out functions one after another on a thread of its own, which begins with the first.
/// *Thread*: post() from any. *Owner*: whoever needs it, as the last of the members that its
/// functions use. *Life*: the destructor waits until everything posted has been carried out.
class BackgroundWorker final {
  public:
    BackgroundWorker() = default;
    ~BackgroundWorker();
    BackgroundWorker(const BackgroundWorker&) = delete;
    BackgroundWorker& operator=(const BackgroundWorker&) = delete;

    /// The function must not throw.
    void post(std::function<void()> job);

  private:
    void run();

    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_jobs;
    bool m_isStopping = false;
    std::thread m_thread;
};
