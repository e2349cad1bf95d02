#include "platform/special_folders.h"

#include <QDir>
#include <QStandardPaths>

ProgramFolders programFolders() {
    // /usr/local lies inside /usr.
    return {{QStringLiteral("/usr"), QStringLiteral("/opt")}, FolderMatch::AtStart};
}

QString musicFolder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return folder.isEmpty() ? QDir::homePath() : folder;
}

QStringList shippedDataFolders(const QString& applicationDir) {
    return {applicationDir, QDir::cleanPath(applicationDir + QStringLiteral("/../share/wavelark"))};
}
