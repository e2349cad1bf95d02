#include "app/program_data.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {
const QStringList& ownNames() {
    static const QStringList names{
        QStringLiteral("Brindlecove"),       QStringLiteral("favorites.xml"),
        QStringLiteral("favorites_bak.xml"), QStringLiteral("history.xml"),
        QStringLiteral("history_bak.xml"),   QStringLiteral("played.json"),
        QStringLiteral("played.json.lock"),  QStringLiteral("crash.txt"),
        QStringLiteral("schedules.xml"),     QStringLiteral("schedules_bak.xml"),
        QStringLiteral("metadata_list.txt"), QStringLiteral("metalist.txt"),
        QStringLiteral("wishlist.txt"),      QStringLiteral("date_formats.txt"),
        QStringLiteral("time_formats.txt"),  QStringLiteral("scrobbling_exception.txt"),
        QStringLiteral("Wavelark.log"),      QStringLiteral("Wavelark.log.1"),
        QStringLiteral("Wavelark.log.2"),    QStringLiteral("Wavelark.log.3"),
        QStringLiteral("Wavelark.log.lock")};
    return names;
}

Error refused(const QString& path) {
    return Error{QCoreApplication::translate(
                     "ProgramData", "%1 is not deleted: it is not a data folder of this program.")
                     .arg(QDir::toNativeSeparators(path))};
}

/// The folder itself or one that holds it.
bool holds(const QString& folder, const QString& path) {
    return path == folder || folder == QLatin1String("/") ||
           path.startsWith(folder + QLatin1Char('/'));
}

QString cleaned(const QString& path) {
    const QString canonical = QFileInfo(QDir::fromNativeSeparators(path)).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QDir::fromNativeSeparators(path)) : canonical;
}

bool isDataFolder(const DataFolder& folder, const QString& path) {
    const bool hasSettings =
        QFileInfo::exists(QDir(path).filePath(QStringLiteral("Brindlecove/Wavelark.ini")));
    return hasSettings ||
           (!folder.isPortable && QFileInfo(path).fileName() == QLatin1String("Wavelark"));
}

bool hasEntries(const QString& folder) {
    return !QDir(folder)
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
                .isEmpty();
}
} // namespace

Result<RemovalPlan> planRemoval(const RemovalInput& input) {
    const QString path = cleaned(input.folder.path);
    if (path.isEmpty() || QDir(path).isRoot() || holds(path, cleaned(input.homePath)))
        return refused(path);
    if (!QFileInfo(path).isDir())
        return RemovalPlan{};
    if (!isDataFolder(input.folder, path))
        return refused(path);

    const bool holdsProgram = holds(path, cleaned(input.folder.applicationDir));
    const bool holdsRecordings = hasEntries(QDir(path).filePath(QStringLiteral("Recordings")));
    if (!holdsProgram && !holdsRecordings)
        return RemovalPlan{{path}};
    RemovalPlan plan;
    for (const QString& name : ownNames())
        if (QFileInfo::exists(QDir(path).filePath(name)))
            plan.paths.append(QDir(path).filePath(name));
    return plan;
}

Status removeProgramData(const RemovalPlan& plan) {
    for (const QString& path : plan.paths) {
        const QFileInfo info(path);
        const bool isFolder = info.isDir() && !info.isSymLink();
        const bool isGone = isFolder ? QDir(path).removeRecursively() : QFile::remove(path);
        if (!isGone)
            return Error{QCoreApplication::translate("ProgramData", "%1 cannot be deleted.")
                             .arg(QDir::toNativeSeparators(path))};
    }
    return Done{};
}
