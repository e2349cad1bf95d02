#include "app/language_manager.h"

#include "base/log.h"

#include <QCoreApplication>
#include <QDir>
#include <QSet>

#include <algorithm>

namespace {

const QLatin1String kEnding(".lng");
const QLatin1String kExtraEnding(".ex.lng");
//: The name of the language that the file translates to, in that language.
constexpr auto kOwnName = QT_TRANSLATE_NOOP("LanguageManager", "English");

QString withEnding(QString name, QLatin1String from, QLatin1String to) {
    if (name.endsWith(from, Qt::CaseInsensitive)) {
        name.chop(from.size());
        name += to;
    }
    return name;
}

QStringList filesIn(const QString& folder) {
    return QDir(folder).entryList({QStringLiteral("*.lng")}, QDir::Files, QDir::Name);
}

} // namespace

LanguageFiles languageFiles(const QString& setting) {
    // A name only: the setting never leads out of the folder of languages.
    const int slash =
        std::max(setting.lastIndexOf(QLatin1Char('/')), setting.lastIndexOf(QLatin1Char('\\')));
    const QString main = withEnding(setting.mid(slash + 1), QLatin1String(".xml"), kEnding);
    return {main, withEnding(main, kEnding, kExtraEnding)};
}

LanguageManager::LanguageManager(QStringList folders) : m_folders(std::move(folders)) {}

LanguageManager::~LanguageManager() {
    for (const auto& translator : m_installed) {
        QCoreApplication::removeTranslator(translator.get());
    }
}

QStringList LanguageManager::standardFolders() {
    const QDir program(QCoreApplication::applicationDirPath());
    return {program.filePath(QStringLiteral("Languages")),
            program.filePath(QStringLiteral("../share/wavelark/Languages"))};
}

QVector<Language> LanguageManager::languages() const {
    QVector<Language> found;
    QSet<QString> seen;
    for (const QString& folder : m_folders) {
        const QStringList names = filesIn(folder);
        for (const QString& name : names) {
            QTranslator texts;
            if (name.endsWith(kExtraEnding, Qt::CaseInsensitive) || seen.contains(name.toLower()) ||
                !texts.load(QDir(folder).filePath(name))) {
                continue;
            }
            seen.insert(name.toLower());
            const QString own = texts.translate("LanguageManager", kOwnName);
            found.append({name, own.isEmpty() ? name.chopped(kEnding.size()) : own});
        }
    }
    std::sort(found.begin(), found.end(), [](const Language& a, const Language& b) {
        return a.name.localeAwareCompare(b.name) < 0;
    });
    return found;
}

bool LanguageManager::load(const QString& setting) {
    const LanguageFiles files = languageFiles(setting);
    const QString path = find(files.main);
    if (path.isEmpty() || !install(path)) {
        qCWarning(lcApp,
                  "LanguageManager::load: no texts, the language is English file=%s folders=%s",
                  qPrintable(files.main),
                  qPrintable(m_folders.join(QLatin1Char(' '))));
        return false;
    }
    const QString extra = find(files.extra);
    if (!extra.isEmpty() && files.extra != files.main) {
        install(extra);
    }
    qCInfo(lcApp, "LanguageManager::load: file=%s", qPrintable(path));
    return true;
}

// "/lang=" gives names in lower case, and file systems may tell letter cases apart.
QString LanguageManager::find(const QString& fileName) const {
    for (const QString& folder : m_folders) {
        const QStringList names = filesIn(folder);
        for (const QString& name : names) {
            if (name.compare(fileName, Qt::CaseInsensitive) == 0) {
                return QDir(folder).filePath(name);
            }
        }
    }
    return {};
}

bool LanguageManager::install(const QString& path) {
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(path)) {
        return false;
    }
    QCoreApplication::installTranslator(translator.get());
    m_installed.push_back(std::move(translator));
    return true;
}
