// The indexed and grouped keys of AppSettings.

#include "app/app_settings.h"
#include "base/log.h"

#include <array>

namespace {
struct TreeKey {
    const char* tree;
    const char* key;
};

constexpr std::array<TreeKey, 4> kGroupColumns{{{"TreeFavorites", "TreeFavoritesGroupColumn"},
                                                {"TreeSearchStations", "TreeSearchGroupColumn"},
                                                {"TreeNewStations", "TreeNewStationsGroupColumn"},
                                                {"TreeStations", "TreeStationsGroupColumn"}}};

/// Empty for an unknown tree.
QString groupColumnKey(const QString& treeName) {
    for (const TreeKey& entry : kGroupColumns)
        if (treeName == QLatin1String(entry.tree))
            return QLatin1String(entry.key);
    return {};
}

QString columnKey(const QString& tree, int column) {
    return QStringLiteral("%1_%2%3").arg(QStringLiteral("ColWidth"), tree).arg(column);
}

QString windowKey(const QString& windowName) {
    return QStringLiteral("Window%1").arg(windowName);
}

QString stationKey(const char* base, const QString& stationId) {
    return QStringLiteral("%1_%2").arg(QLatin1String(base), stationId);
}

QString numberedKey(const char* pattern, int n) {
    return QString(QLatin1String(pattern)).arg(n);
}

QString boolText(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
} // namespace

int AppSettings::GetTreeGroupColumn(const QString& treeName) const {
    const QString key = groupColumnKey(treeName);
    if (key.isEmpty()) {
        qCWarning(
            lcApp, "AppSettings::GetTreeGroupColumn unknown tree=%ls", qUtf16Printable(treeName));
        return 0;
    }
    return storedText(key).toInt();
}

void AppSettings::SetTreeGroupColumn(const QString& treeName, int column) {
    const QString key = groupColumnKey(treeName);
    if (key.isEmpty()) {
        qCWarning(
            lcApp, "AppSettings::SetTreeGroupColumn unknown tree=%ls", qUtf16Printable(treeName));
        return;
    }
    store(key, QString::number(column));
}

int AppSettings::columnWidth(const QString& tree, int column) const {
    return storedText(columnKey(tree, column)).toInt();
}

void AppSettings::setColumnWidth(const QString& tree, int column, int width) {
    store(columnKey(tree, column), QString::number(width));
}

QByteArray AppSettings::RestoreWindowGeometry(const QString& windowName) const {
    return m_store.value(windowKey(windowName)).toByteArray();
}

void AppSettings::SaveWindowGeometry(const QString& windowName, const QByteArray& geometry) {
    store(windowKey(windowName), geometry);
}

bool AppSettings::isMainButtonOn(int button) const {
    return m_store.value(numberedKey("MainButtons/Button_%1", button)).toBool();
}

void AppSettings::setMainButtonOn(int button, bool value) {
    store(numberedKey("MainButtons/Button_%1", button), boolText(value));
}

QString AppSettings::hotkey(int n) const {
    return storedText(numberedKey("Hotkeys/Hotkey_%1", n));
}

void AppSettings::setHotkey(int n, const QString& text) {
    store(numberedKey("Hotkeys/Hotkey_%1", n), text);
}

QString AppSettings::shortcut(int n) const {
    return storedText(numberedKey("Shortcuts/Shortcut_%1", n));
}

void AppSettings::setShortcut(int n, const QString& text) {
    store(numberedKey("Shortcuts/Shortcut_%1", n), text);
}

QString AppSettings::treeShortcut(int n) const {
    return storedText(numberedKey("TreeShortcuts/Shortcut_%1", n));
}

void AppSettings::setTreeShortcut(int n, const QString& text) {
    store(numberedKey("TreeShortcuts/Shortcut_%1", n), text);
}

QString AppSettings::eqPresetForStation(const QString& stationId) const {
    return storedText(stationKey("EQPresetForStation", stationId));
}

void AppSettings::setEqPresetForStation(const QString& stationId, const QString& preset) {
    store(stationKey("EQPresetForStation", stationId), preset);
}

uint AppSettings::eqPresetIdForStation(const QString& stationId) const {
    return storedText(stationKey("EQPresetForStationID", stationId)).toUInt();
}

void AppSettings::setEqPresetIdForStation(const QString& stationId, uint presetId) {
    store(stationKey("EQPresetForStationID", stationId), QString::number(presetId));
}

QString AppSettings::eqPreampForStation(const QString& stationId) const {
    return storedText(stationKey("EQPreampForStation", stationId));
}

void AppSettings::setEqPreampForStation(const QString& stationId, const QString& preamp) {
    store(stationKey("EQPreampForStation", stationId), preamp);
}

bool AppSettings::isEqEnabledForStation(const QString& stationId) const {
    return m_store.value(stationKey("EQEnabledForStation", stationId)).toBool();
}

void AppSettings::setEqEnabledForStation(const QString& stationId, bool value) {
    store(stationKey("EQEnabledForStation", stationId), boolText(value));
}
