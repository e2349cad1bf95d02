#include "app/data_folder.h"

#include <QCoreApplication>
#include <QDir>

namespace {
bool isInside(const QString& path, const QString& folder, FolderMatch match) {
    if (folder.isEmpty())
        return false;
    if (match == FolderMatch::Anywhere)
        return path.contains(folder, Qt::CaseInsensitive);
    return path == folder || path.startsWith(folder + QDir::separator());
}
} // namespace

DataFolder decideDataFolder(const DataFolderInput& input) {
    DataFolder result;
    result.applicationDir = QDir::toNativeSeparators(input.applicationDir);
    if (!input.chosenFolder.isEmpty()) {
        const QString absolute = QDir(input.chosenFolder).absolutePath();
        result.path = QDir::toNativeSeparators(QDir::cleanPath(absolute));
        return result;
    }
    for (const QString& folder : input.programFolders.folders)
        if (isInside(result.applicationDir,
                     QDir::toNativeSeparators(folder),
                     input.programFolders.match))
            result.isPortable = false;
    if (result.isPortable) {
        result.path = result.applicationDir;
        return result;
    }
    QString home = QDir::toNativeSeparators(input.homePath);
    if (!home.endsWith(QDir::separator()))
        home += QDir::separator();
    result.path = home + QStringLiteral("Wavelark");
    return result;
}

DataFolder currentDataFolder() {
    return decideDataFolder({QCoreApplication::applicationDirPath(),
                             programFolders(),
                             QDir::homePath(),
                             qEnvironmentVariable("WAVELARK_DATA")});
}
