#pragma once

#include "app/settings_writer.h"

#include <QHash>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class Setting;

/// The settings file as the program sees it: values in memory, changes on their way to the disk,
/// changes from outside noticed within half a second.
/// Thread: GUI thread only. Owner: AppSettings.
class SettingsStore final {
  public:
    /// A sentence for the user; may come from the writer's thread.
    using Tell = std::function<void(const QString&)>;

    /// Reads the file. One that is damaged is set aside, and what can be rescued kept.
    SettingsStore(QString path, Tell tell);
    ~SettingsStore();
    Q_DISABLE_COPY_MOVE(SettingsStore)

    [[nodiscard]] QString path() const { return m_path; }

    /// The file's value; invalid where it has none. Looks for changes first.
    [[nodiscard]] QVariant value(const QString& key);
    /// Same without looking.
    [[nodiscard]] QVariant knownValue(const QString& key) const;
    /// Into memory at once, to the disk in the background.
    void put(const QString& key, const QVariant& value);
    void remove(const QString& key);
    bool flush(std::chrono::milliseconds limit);

    /// Takes over changes that others made to the file. Costs a look at the clock, and twice a
    /// second a look at the file.
    void refresh() {
        if (std::chrono::steady_clock::now() >= m_nextLook)
            look();
    }

    /// The setting is told of every change from outside. It must outlive the store's use.
    void watch(Setting& setting);

  private:
    void open();
    void look();
    void adopt(IniSnapshot snapshot);

    const QString m_path;
    const Tell m_tell;
    QHash<QString, QVariant> m_values;
    QVariantMap m_opened; // what open() found, until the writer starts with it
    FileStamp m_stamp;
    std::chrono::steady_clock::time_point m_nextLook;
    std::vector<Setting*> m_watched;
    std::unique_ptr<SettingsWriter> m_writer;
};
