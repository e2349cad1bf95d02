#pragma once

#include "app/ini_file.h"

#include <QVariantMap>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

/// Brings changed settings to the disk without keeping the window waiting: a lone change within
/// some 20 ms, a burst of them together, at most one write in 250 ms.
/// Thread: all functions from any thread. Owner: SettingsStore. Life: what was put is written at
/// the latest by the destructor. Where the file cannot be written, the changes are kept and tried
/// again.
class SettingsWriter final {
  public:
    /// What may happen to a write. `report` is called on the writer's thread, once per kind until
    /// a write comes off again.
    struct Report {
        std::function<void(const QString& setAsidePath)> damaged;
        std::function<void(const QString& reason)> failed;
    };

    /// Starts with what the file is known to hold.
    SettingsWriter(QString path, QVariantMap lastGood, Report report);
    ~SettingsWriter();
    Q_DISABLE_COPY_MOVE(SettingsWriter)

    /// An invalid variant removes the key.
    void put(const QString& key, const QVariant& value);
    /// Changes that are not on the disk yet.
    [[nodiscard]] QVariantMap unwritten() const;
    /// The file as the last write left it, given out once.
    std::optional<IniSnapshot> takeWritten();
    /// Waits until all that was put before is on the disk. False: not within the limit.
    bool flush(std::chrono::milliseconds limit);

  private:
    void run();
    void waitForTurn(std::unique_lock<std::mutex>& lock);
    void write(std::unique_lock<std::mutex>& lock);
    void keepForLater();

    const QString m_path;
    const Report m_report;

    mutable std::mutex m_mutex; // guards all below
    std::condition_variable m_wake;
    std::condition_variable m_done;
    QVariantMap m_lastGood;
    QVariantMap m_pending;
    QVariantMap m_inFlight;
    std::optional<IniSnapshot> m_written;
    std::chrono::steady_clock::time_point m_earliest;
    bool m_isUrgent = false;
    bool m_isStopping = false;
    bool m_hasFailed = false;

    std::thread m_thread; // last: starts when all else is ready
};
