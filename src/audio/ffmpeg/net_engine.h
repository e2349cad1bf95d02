#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace BASS {

class HttpTransfer;

/// One thread for the connections of all streams. It wakes for data, deadlines and commands only;
/// for data some times a second where every transfer can wait (TransferSink::canWait()).
///
/// *Thread*: any; transfers' callbacks come from its own thread. *Owner*: the library. *Life*: the
/// thread starts with the first transfer; destroying it drops every transfer.
class NetEngine {
  public:
    NetEngine();
    ~NetEngine();
    NetEngine(const NetEngine&) = delete;
    NetEngine& operator=(const NetEngine&) = delete;

    void start(std::shared_ptr<HttpTransfer> transfer);
    /// Returns at once; the transfer is dropped soon after, without a further callback's result
    /// being looked at.
    void stop(const std::shared_ptr<HttpTransfer>& transfer);
    /// A paused transfer goes on.
    void resume(const std::shared_ptr<HttpTransfer>& transfer);
    /// Runs `task` on the network thread, at the earliest after `pause`; dropped where the engine
    /// ends before.
    void call(std::function<void()> task,
              std::chrono::milliseconds pause = std::chrono::milliseconds(0));

  private:
    struct Loop;

    enum class What { Start, Stop, Resume, Call };
    struct Command {
        What what;
        std::shared_ptr<HttpTransfer> transfer;
        std::function<void()> task;
        std::chrono::steady_clock::time_point due;
    };

    void post(Command command);
    void run();
    void rest(std::chrono::milliseconds time);
    std::vector<Command> takeCommands();

    std::unique_ptr<Loop> m_loop; ///< its handle may be woken from any thread, the rest is run()'s
    std::mutex m_mutex;           ///< guards m_commands, m_isStopping and the thread's start
    std::condition_variable m_posted;
    std::vector<Command> m_commands;
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace BASS
