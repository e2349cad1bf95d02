// The keys of AppSettings that have rules of their own.

#include "app/app_settings.h"

#include <QDir>
#include <QLocale>

#include <array>

namespace {
struct LanguageCountry {
    const char* language;
    const char* country;
};

constexpr std::array<LanguageCountry, 8> kPodcastCountries{{{"german", "de"},
                                                            {"french", "fr"},
                                                            {"dutch", "nl"},
                                                            {"portuguese", "pt"},
                                                            {"italian", "it"},
                                                            {"czech", "cz"},
                                                            {"polish", "pl"},
                                                            {"spanish", "es"}}};

QString boolText(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString modeKey(const QString& base, const QString& suffix, RecordSplitting splitting) {
    const QString mode = splitting == RecordSplitting::On ? QStringLiteral("Splitting")
                                                          : QStringLiteral("NoSplitting");
    return base + mode + suffix;
}
} // namespace

bool AppSettings::ProxyDisabled() const {
    const QVariant stored = m_store.value(QStringLiteral("ProxyDisabled"));
    if (!stored.isValid())
        return false;
    return stored.toInt() != 0 || stored.toString() == QLatin1String("true");
}

void AppSettings::SetProxyDisabled(bool value) {
    store(QStringLiteral("ProxyDisabled"), boolText(value));
}

bool AppSettings::ScheduleTime24h() const {
    const QVariant stored = m_store.value(QStringLiteral("ScheduleTime24h"));
    if (stored.isValid())
        return stored.toBool();
    return !QLocale().timeFormat(QLocale::LongFormat).contains(QLatin1Char('A'));
}

void AppSettings::SetScheduleTime24h(bool value) {
    store(QStringLiteral("ScheduleTime24h"), boolText(value));
}

QString AppSettings::ScreenReader() const {
    return storedText(QStringLiteral("ScreenReader"));
}

void AppSettings::SetScreenReader(const QString& value) {
    store(QStringLiteral("ScreenReader"), value);
}

bool AppSettings::hasScreenReader() const {
    return ScreenReader() != QLatin1String("cmdOff");
}

QString AppSettings::insideDataFolder(const QString& path) const {
    const QString absolute = QDir(m_folder.path).absoluteFilePath(path);
    return QDir::toNativeSeparators(QDir::cleanPath(absolute));
}

QString AppSettings::AppRecordingFolder() const {
    const QString stored = storedText(QStringLiteral("AppRecordingFolder"));
    if (!stored.isEmpty())
        return insideDataFolder(stored);
    if (m_folder.isPortable)
        return insideDataFolder(QStringLiteral("Recordings"));
    return QDir::toNativeSeparators(QDir(musicFolder()).filePath(QStringLiteral("Wavelark")));
}

void AppSettings::SetAppRecordingFolder(const QString& value) {
    store(QStringLiteral("AppRecordingFolder"), value);
}

QString AppSettings::LastFavoritesFile() const {
    const QString stored = storedText(QStringLiteral("LastFavoritesFile"));
    if (!stored.isEmpty())
        return stored;
    return QDir::toNativeSeparators(dataFile(QStringLiteral("favorites.xml")));
}

void AppSettings::SetLastFavoritesFile(const QString& value) {
    store(QStringLiteral("LastFavoritesFile"), value);
}

QString AppSettings::recordingFormat(const QString& base,
                                     const QString& suffix,
                                     RecordSplitting splitting) const {
    const QString generic = storedText(base + suffix);
    return generic.isEmpty() ? storedText(modeKey(base, suffix, splitting)) : generic;
}

void AppSettings::setRecordingFormat(const QString& base,
                                     const QString& suffix,
                                     RecordSplitting splitting,
                                     const QString& format) {
    const QString generic = storedText(base + suffix);
    if (!generic.isEmpty()) {
        // The key of older files would go on winning: it becomes the other mode's format.
        const RecordSplitting other =
            splitting == RecordSplitting::On ? RecordSplitting::Off : RecordSplitting::On;
        store(modeKey(base, suffix, other), generic);
        store(base + suffix, QString());
    }
    store(modeKey(base, suffix, splitting), format);
}

QString AppSettings::RecDateFormat(RecordSplitting splitting) const {
    const QString format = recordingFormat(QStringLiteral("RecDateFormat"), QString(), splitting);
    return format.isEmpty() ? QStringLiteral("dd.MMM.yyyy") : format;
}

void AppSettings::SetRecDateFormat(RecordSplitting splitting, const QString& format) {
    setRecordingFormat(QStringLiteral("RecDateFormat"), QString(), splitting, format);
}

QString AppSettings::RecTimeFormat(RecordSplitting splitting) const {
    const QString format =
        recordingFormat(QStringLiteral("RecTimeFormat"), QStringLiteral("1"), splitting);
    return format.isEmpty() ? QStringLiteral("h.mm.ss AP") : format;
}

void AppSettings::SetRecTimeFormat(RecordSplitting splitting, const QString& format) {
    setRecordingFormat(QStringLiteral("RecTimeFormat"), QStringLiteral("1"), splitting, format);
}

QString AppSettings::PodcastCountryCode() const {
    const QString stored = storedText(QStringLiteral("PodcastCountryCode"));
    if (!stored.isEmpty())
        return stored;
    const QString languageFile = LanguageFile();
    for (const LanguageCountry& entry : kPodcastCountries)
        if (languageFile.contains(QLatin1String(entry.language), Qt::CaseInsensitive))
            return QLatin1String(entry.country);
    return QStringLiteral("us");
}

void AppSettings::SetPodcastCountryCode(const QString& value) {
    store(QStringLiteral("PodcastCountryCode"), value);
}

FontText AppSettings::GetAppFont() const {
    FontText font{QStringLiteral("Arial"), 10, storedText(QStringLiteral("AppFont"))};
    const QString family = font.stored.section(QLatin1Char(','), 0, 0).trimmed();
    const int pointSize = font.stored.section(QLatin1Char(','), 1, 1).toInt();
    if (!family.isEmpty())
        font.family = family;
    if (pointSize > 0)
        font.pointSize = pointSize;
    return font;
}

void AppSettings::SetAppFont(const QString& description) {
    store(QStringLiteral("AppFont"), description);
}

FontText AppSettings::listFont() const {
    return {QStringLiteral("Arial"), 11, QString()};
}
