#include "platform/file_sync.h"

#include <QDir>
#include <QFile>

#include <io.h>
#include <windows.h>

namespace {
const wchar_t* wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}
} // namespace

bool syncFile(const QFile& file) {
    const int handle = file.handle();
    return handle >= 0 && ::_commit(handle) == 0;
}

bool moveOver(const QString& from, const QString& to) {
    const QString source = QDir::toNativeSeparators(from);
    const QString target = QDir::toNativeSeparators(to);
    return ::MoveFileExW(
               wide(source), wide(target), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}
