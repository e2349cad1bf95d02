#include "platform/file_sync.h"

#include <QByteArray>
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

bool appendTo(const QString& path, const QByteArray& bytes) {
    QFile file(path); // open(2): with O_APPEND nobody writes between the seek and the write
    return file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) &&
           file.write(bytes) == bytes.size();
}
