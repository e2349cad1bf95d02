#include "platform/file_sync.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <io.h>
#include <windows.h>

#include <string>

namespace {
/// As the system's calls take more than 260 characters, without a setting of the system for it
/// ("Maximum Path Length Limitation" of the Windows documentation).
std::wstring extended(const QString& path) {
    const QString native =
        QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    if (native.startsWith(QLatin1String("\\\\?\\")))
        return native.toStdWString();
    if (native.startsWith(QLatin1String("\\\\")))
        return (QStringLiteral("\\\\?\\UNC") + native.mid(1)).toStdWString();
    return (QStringLiteral("\\\\?\\") + native).toStdWString();
}
} // namespace

bool syncFile(const QFile& file) {
    const int handle = file.handle();
    return handle >= 0 && ::_commit(handle) == 0;
}

bool moveOver(const QString& from, const QString& to) {
    return ::MoveFileExW(extended(from).c_str(),
                         extended(to).c_str(),
                         MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}
