#include "app/settings_store.h"

#include "app/setting.h"
#include "base/log.h"

#include <QCoreApplication>
#include <QDir>

namespace {
constexpr std::chrono::milliseconds kLookEvery{500};

QString damagedText(const QString& path, const QString& aside) {
    return QCoreApplication::translate(
               "Settings",
               "The settings file %1 was damaged. It was kept as %2, and what could be read of it "
               "is still in force.")
        .arg(QDir::toNativeSeparators(path), QDir::toNativeSeparators(aside));
}

QString failedText(const QString& path, const QString& reason) {
    return QCoreApplication::translate("Settings",
                                       "Settings cannot be saved in %1 (%2). Changes are kept "
                                       "until the program ends.")
        .arg(QDir::toNativeSeparators(path), reason);
}
} // namespace

SettingsStore::SettingsStore(QString path, Tell tell)
    : m_path(std::move(path)), m_tell(std::move(tell)) {
    open();
    SettingsWriter::Report report;
    report.damaged = [this](const QString& aside) { m_tell(damagedText(m_path, aside)); };
    report.failed = [this](const QString& reason) { m_tell(failedText(m_path, reason)); };
    m_writer = std::make_unique<SettingsWriter>(m_path, m_opened, std::move(report));
    m_opened.clear();
}

SettingsStore::~SettingsStore() = default;

void SettingsStore::open() {
    IniSnapshot found = loadIni(m_path);
    if (found.state == IniState::Unreadable)
        m_tell(failedText(m_path, found.problem));
    if (found.state == IniState::Damaged) {
        Result<IniMerge> merged = mergeIni(m_path, {}, {});
        if (!merged) {
            m_tell(failedText(m_path, merged.error()));
        } else {
            if (!merged.value().setAsidePath.isEmpty())
                m_tell(damagedText(m_path, merged.value().setAsidePath));
            found = merged.value().snapshot;
        }
    }
    m_opened = found.values;
    m_stamp = found.stamp;
    for (auto it = m_opened.begin(); it != m_opened.end(); ++it)
        m_values.insert(it.key(), it.value());
    m_nextLook = std::chrono::steady_clock::now() + kLookEvery;
}

QVariant SettingsStore::value(const QString& key) {
    refresh();
    return knownValue(key);
}

QVariant SettingsStore::knownValue(const QString& key) const {
    return m_values.value(key);
}

void SettingsStore::put(const QString& key, const QVariant& value) {
    m_values.insert(key, value);
    m_writer->put(key, value);
}

void SettingsStore::remove(const QString& key) {
    m_values.remove(key);
    m_writer->put(key, QVariant());
}

bool SettingsStore::flush(std::chrono::milliseconds limit) {
    return m_writer->flush(limit);
}

void SettingsStore::watch(Setting& setting) {
    m_watched.push_back(&setting);
}

void SettingsStore::look() {
    m_nextLook = std::chrono::steady_clock::now() + kLookEvery;
    const FileStamp stamp = fileStamp(m_path);
    std::optional<IniSnapshot> written = m_writer->takeWritten();
    if (stamp == m_stamp)
        return;
    if (written && written->stamp == stamp) {
        adopt(*std::move(written));
        return;
    }
    IniSnapshot found = loadIni(m_path);
    if (found.state == IniState::Good || found.state == IniState::Missing) {
        adopt(std::move(found));
        return;
    }
    // Perhaps an editor is half-way through it. The next write looks again, under the lock.
    qCWarning(lcApp, "AppSettings: the changed settings file cannot be read, its values are kept");
    m_stamp = stamp;
}

void SettingsStore::adopt(IniSnapshot snapshot) {
    const QVariantMap ours = m_writer->unwritten();
    for (auto it = ours.begin(); it != ours.end(); ++it)
        snapshot.values.insert(it.key(), it.value());
    m_values.clear();
    for (auto it = snapshot.values.begin(); it != snapshot.values.end(); ++it)
        if (it.value().isValid())
            m_values.insert(it.key(), it.value());
    m_stamp = snapshot.stamp;
    for (Setting* setting : m_watched)
        setting->adoptFromFile();
}
