#include "platform/file_sync.h"

#include <QByteArray>
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

bool appendTo(const QString& path, const QByteArray& bytes) {
    const HANDLE file = CreateFileW(extended(path).c_str(),
                                    GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr,
                                    OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL,
                                    nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    // To seek and to write are two steps: a lock of a byte that no file has keeps others out.
    OVERLAPPED place{};
    place.OffsetHigh = 0x7fffffff;
    const bool isLocked = LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place) != 0;
    DWORD written = 0;
    const bool isWritten =
        isLocked && SetFilePointerEx(file, {}, nullptr, FILE_END) &&
        WriteFile(file, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    if (isLocked)
        UnlockFileEx(file, 0, 1, 0, &place);
    CloseHandle(file);
    return isWritten && written == static_cast<DWORD>(bytes.size());
}
