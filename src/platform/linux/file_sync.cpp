#include "platform/file_sync.h"

#include <QFile>

#include <unistd.h>

#include <cerrno>
#include <cstdio>

bool syncFile(const QFile& file) {
    const int handle = file.handle();
    if (handle < 0)
        return false;
    // devices and pipes cannot be synced and need not be
    return ::fdatasync(handle) == 0 || errno == EINVAL || errno == EROFS;
}

bool moveOver(const QString& from, const QString& to) {
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}
