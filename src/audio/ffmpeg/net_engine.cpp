#include "audio/ffmpeg/net_engine.h"

#include "audio/ffmpeg/http_transfer.h"
#include "base/log.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>

namespace BASS {
namespace {

/// How long bytes may wait with the system where nobody minds. A recording has them on the disk
/// within a second all the same.
constexpr std::chrono::milliseconds kRest{450};

} // namespace

struct NetEngine::Loop {
    Loop() : multi(curl_multi_init()) {}
    ~Loop() {
        while (!active.empty())
            drop(active.back());
        curl_multi_cleanup(multi);
    }
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    void add(const std::shared_ptr<HttpTransfer>& transfer) {
        transfer->begin();
        if (curl_multi_add_handle(multi, transfer->handle()) != CURLM_OK) {
            transfer->finish(CURLE_FAILED_INIT);
            return;
        }
        active.push_back(transfer);
    }

    void drop(const std::shared_ptr<HttpTransfer>& given) {
        const auto transfer = given; // `given` may be the very entry that is erased
        const auto place = std::find(active.begin(), active.end(), transfer);
        if (place == active.end())
            return;
        active.erase(place);
        curl_multi_remove_handle(multi, transfer->handle());
    }

    void obey(std::vector<Command> commands) {
        for (Command& command : commands) {
            if (command.what == What::Call)
                tasks.push_back(std::move(command));
            else if (command.what == What::Start)
                add(command.transfer);
            else if (command.what == What::Stop)
                drop(command.transfer);
            else if (std::find(active.begin(), active.end(), command.transfer) != active.end())
                command.transfer->resume();
        }
    }

    void runTasks() {
        const auto now = std::chrono::steady_clock::now();
        const auto due = std::stable_partition(
            tasks.begin(), tasks.end(), [now](const Command& task) { return task.due > now; });
        std::vector<Command> running(std::make_move_iterator(due),
                                     std::make_move_iterator(tasks.end()));
        tasks.erase(due, tasks.end());
        for (const Command& task : running)
            task.task();
    }

    void reapFinished() {
        int left = 0;
        while (const CURLMsg* message = curl_multi_info_read(multi, &left)) {
            if (message->msg != CURLMSG_DONE)
                continue;
            const CURL* const handle = message->easy_handle;
            const int result = message->data.result;
            const auto place =
                std::find_if(active.begin(), active.end(), [handle](const auto& transfer) {
                    return transfer->handle() == handle;
                });
            if (place == active.end())
                continue;
            const auto transfer = *place;
            drop(transfer);
            transfer->finish(result);
        }
    }

    /// Ends what was silent for too long; returns the time until the next deadline.
    std::chrono::milliseconds checkDeadlines() {
        constexpr std::chrono::milliseconds kLongest = std::chrono::minutes(1);
        const auto now = std::chrono::steady_clock::now();
        auto next = kLongest;
        const auto until = [now, kLongest](std::chrono::steady_clock::time_point then) {
            return std::chrono::ceil<std::chrono::milliseconds>(
                std::clamp(then - now,
                           std::chrono::steady_clock::duration::zero(),
                           std::chrono::steady_clock::duration(kLongest)));
        };
        for (const Command& task : tasks)
            next = std::min(next, until(task.due));
        const auto transfers = active;
        for (const auto& transfer : transfers) {
            const auto deadline = transfer->deadline();
            if (deadline <= now) {
                drop(transfer);
                transfer->finish(CURLE_OPERATION_TIMEDOUT);
                continue;
            }
            next = std::min(next, until(deadline));
        }
        return next;
    }

    [[nodiscard]] bool canWait() const {
        return !active.empty() && std::all_of(active.begin(), active.end(), [](const auto& each) {
            return each->canWait();
        });
    }

    /// True: something has come meanwhile.
    bool poll(std::chrono::milliseconds wait) {
        int ready = 0;
        curl_multi_poll(multi, nullptr, 0, static_cast<int>(wait.count()), &ready);
        return ready > 0;
    }

    CURLM* multi;
    std::vector<std::shared_ptr<HttpTransfer>> active;
    std::vector<Command> tasks;
};

NetEngine::NetEngine() {
    static const CURLcode isReady = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (isReady != CURLE_OK)
        qCCritical(lcAudio, "network library does not start code=%d", static_cast<int>(isReady));
    m_loop = std::make_unique<Loop>();
}

NetEngine::~NetEngine() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_posted.notify_one();
    curl_multi_wakeup(m_loop->multi);
    if (m_thread.joinable())
        m_thread.join();
}

void NetEngine::start(std::shared_ptr<HttpTransfer> transfer) {
    post({What::Start, std::move(transfer), {}, {}});
}

void NetEngine::stop(const std::shared_ptr<HttpTransfer>& transfer) {
    post({What::Stop, transfer, {}, {}});
}

void NetEngine::resume(const std::shared_ptr<HttpTransfer>& transfer) {
    post({What::Resume, transfer, {}, {}});
}

void NetEngine::call(std::function<void()> task, std::chrono::milliseconds pause) {
    post({What::Call, nullptr, std::move(task), std::chrono::steady_clock::now() + pause});
}

void NetEngine::post(Command command) {
    {
        const std::lock_guard lock(m_mutex);
        m_commands.push_back(std::move(command));
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
    }
    m_posted.notify_one();
    curl_multi_wakeup(m_loop->multi);
}

std::vector<NetEngine::Command> NetEngine::takeCommands() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_commands, {});
}

/// Sleeps whatever comes, but for commands.
void NetEngine::rest(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    m_posted.wait_for(lock, time, [this] { return m_isStopping || !m_commands.empty(); });
}

void NetEngine::run() {
    const auto isStopping = [this] {
        const std::lock_guard lock(m_mutex);
        return m_isStopping;
    };
    while (!isStopping()) {
        m_loop->obey(takeCommands());
        m_loop->runTasks();
        int running = 0;
        curl_multi_perform(m_loop->multi, &running);
        m_loop->reapFinished();
        const auto wait = m_loop->checkDeadlines();
        if (!m_loop->canWait())
            m_loop->poll(wait);
        else if (!m_loop->poll(std::chrono::milliseconds(0))) // all that had come is taken
            rest(std::min(wait, kRest));
    }
    while (!m_loop->active.empty()) // on the thread that used them
        m_loop->drop(m_loop->active.back());
}

} // namespace BASS
