#include "app/settings_writer.h"

#include <utility>

namespace {
using namespace std::chrono_literals;
constexpr auto kGather = 20ms;
constexpr auto kPause = 250ms;
constexpr auto kRetry = 5s;
} // namespace

SettingsWriter::SettingsWriter(QString path, QVariantMap lastGood, Report report)
    : m_path(std::move(path)), m_report(std::move(report)), m_lastGood(std::move(lastGood)),
      m_thread([this] { run(); }) {}

SettingsWriter::~SettingsWriter() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void SettingsWriter::put(const QString& key, const QVariant& value) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pending.insert(key, value);
    }
    m_wake.notify_all();
}

QVariantMap SettingsWriter::unwritten() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    QVariantMap all = m_inFlight;
    for (auto it = m_pending.begin(); it != m_pending.end(); ++it)
        all.insert(it.key(), it.value());
    return all;
}

std::optional<IniSnapshot> SettingsWriter::takeWritten() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_written, std::nullopt);
}

bool SettingsWriter::flush(std::chrono::milliseconds limit) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isUrgent = true;
    m_wake.notify_all();
    const bool isWritten = m_done.wait_for(
        lock, limit, [this] { return m_pending.isEmpty() && m_inFlight.isEmpty(); });
    m_isUrgent = false;
    return isWritten;
}

void SettingsWriter::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_isStopping || !m_pending.isEmpty(); });
        if (!m_isStopping)
            waitForTurn(lock);
        if (!m_pending.isEmpty())
            write(lock);
        if (m_isStopping && (m_pending.isEmpty() || m_hasFailed))
            return;
    }
}

void SettingsWriter::waitForTurn(std::unique_lock<std::mutex>& lock) {
    const auto turn = std::max(m_earliest, std::chrono::steady_clock::now() + kGather);
    m_wake.wait_until(lock, turn, [this] { return m_isStopping || (m_isUrgent && !m_hasFailed); });
}

void SettingsWriter::write(std::unique_lock<std::mutex>& lock) {
    m_inFlight = std::exchange(m_pending, {});
    const QVariantMap changes = m_inFlight;
    const QVariantMap lastGood = m_lastGood;
    const bool hadFailed = m_hasFailed;
    lock.unlock();
    Result<IniMerge> merged = mergeIni(m_path, changes, lastGood);
    if (!merged && !hadFailed)
        m_report.failed(merged.error());
    if (merged && !merged.value().setAsidePath.isEmpty())
        m_report.damaged(merged.value().setAsidePath);
    lock.lock();

    m_hasFailed = !merged;
    m_earliest = std::chrono::steady_clock::now() +
                 (merged ? std::chrono::milliseconds(kPause) : std::chrono::milliseconds(kRetry));
    if (merged) {
        m_inFlight.clear();
        m_lastGood = merged.value().snapshot.values;
        m_written = merged.value().snapshot;
    } else {
        keepForLater();
    }
    m_done.notify_all();
}

void SettingsWriter::keepForLater() {
    // What was put in the meantime is newer.
    for (auto it = m_inFlight.begin(); it != m_inFlight.end(); ++it)
        if (!m_pending.contains(it.key()))
            m_pending.insert(it.key(), it.value());
    m_inFlight.clear();
}
