#include "app/app_settings.h"

#include "app/application_identity.h"
#include "app/list_file.h"
#include "base/log.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSettings>

#include <utility>

namespace {
constexpr int kAltPresetFiles = 5;

QString iniPath(const DataFolder& folder) {
    return QDir(folder.path).filePath(QStringLiteral("Brindlecove/Wavelark.ini"));
}

/// Every QSettings in the process, whoever opens it, is the program's own file.
DataFolder settled(DataFolder folder) {
    setApplicationIdentity();
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path);
    if (folder.path != folder.applicationDir && !QDir().mkpath(folder.path))
        qCWarning(lcApp, "AppSettings: cannot create dataFolder=%ls", qUtf16Printable(folder.path));
    return folder;
}

QString altPresetKey(int n) {
    return QStringLiteral("AltPresetFile%1").arg(n);
}
} // namespace

SettingsGround::SettingsGround(DataFolder folder)
    : m_folder(settled(std::move(folder))),
      m_store(iniPath(m_folder), [this](const QString& message) { tell(message); }) {}

void SettingsGround::tell(const QString& message) {
    qCWarning(lcApp, "AppSettings: %ls", qUtf16Printable(message));
    const std::lock_guard<std::mutex> lock(m_messageMutex);
    m_messages.append(message);
    if (m_onMessage)
        m_onMessage();
}

AppSettings::AppSettings(QObject* parent) : AppSettings(currentDataFolder(), parent) {}

AppSettings::AppSettings(const DataFolder& folder, QObject* parent)
    : QObject(parent), SettingsGround(folder), GeneralSettings(m_store), ColourSettings(m_store),
      AudioSettings(m_store), ConnectionSettings(m_store), RecordingSettings(m_store),
      SchedulerSettings(m_store), TraySettings(m_store), SpeechSettings(m_store),
      StationSettings(m_store), FavoriteSettings(m_store), PodcastSettings(m_store),
      ServiceSettings(m_store), OwnSettings(m_store) {
    {
        const std::lock_guard<std::mutex> lock(m_messageMutex);
        m_onMessage = [this] {
            QMetaObject::invokeMethod(this, &AppSettings::sig_messageAdded, Qt::QueuedConnection);
        };
    }
    load();
}

void AppSettings::load() {
    // A portable program finds these files where they were shipped.
    if (m_folder.path != m_folder.applicationDir)
        copyShippedFiles();
    for (int n = 1; n <= kAltPresetFiles; ++n) {
        const QVariant file = m_store.knownValue(altPresetKey(n));
        if (!file.isValid())
            break;
        m_altPresetFiles.append(settingText(file));
    }
}

void AppSettings::copyShippedFiles() {
    const QStringList names{PresetsFileEncrypted(), QStringLiteral("genres.xml")};
    const QStringList folders = shippedDataFolders(m_folder.applicationDir);
    for (const QString& name : names) {
        for (const QString& folder : folders) {
            const QString shipped = QDir(folder).filePath(name);
            // copy() leaves an existing file untouched.
            if (QFile::exists(shipped) && !QFile::exists(dataFile(name)) &&
                !QFile::copy(shipped, dataFile(name)))
                qCWarning(lcApp, "AppSettings: cannot copy file=%ls", qUtf16Printable(shipped));
        }
    }
}

QString AppSettings::applicationFile(const QString& name) const {
    return QDir(m_folder.applicationDir).filePath(name);
}

QString AppSettings::dataFile(const QString& name) const {
    return QDir(m_folder.path).filePath(name);
}

QStringList AppSettings::loadList(const QString& name) const {
    return loadListFile(dataFile(name));
}

bool AppSettings::saveList(const QString& name, const QStringList& entries) const {
    return saveListFile(dataFile(name), entries);
}

QStringList AppSettings::takeMessages() {
    const std::lock_guard<std::mutex> lock(m_messageMutex);
    return std::exchange(m_messages, {});
}

bool AppSettings::flush(std::chrono::milliseconds limit) {
    return m_store.flush(limit);
}

QString AppSettings::storedText(const QString& key) const {
    return settingText(m_store.value(key));
}

void AppSettings::store(const QString& key, const QVariant& value) {
    m_store.put(key, value);
}

void AppSettings::SetAltPresetFiles(const QStringList& files) {
    m_altPresetFiles = files.mid(0, kAltPresetFiles);
    for (int n = 1; n <= kAltPresetFiles; ++n) {
        if (n <= m_altPresetFiles.size())
            store(altPresetKey(n), m_altPresetFiles.at(n - 1));
        else
            m_store.remove(altPresetKey(n)); // a gap ends the list
    }
}
