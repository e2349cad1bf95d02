#include "platform/special_folders.h"

#include <QDir>

// The first declares what the second needs.
// clang-format off
#include <windows.h>
#include <shlobj.h>
// clang-format on

#include <array>

namespace {
QString specialFolder(int csidl) {
    std::array<wchar_t, MAX_PATH + 1> path{};
    if (!SHGetSpecialFolderPathW(nullptr, path.data(), csidl, FALSE))
        return {};
    return QDir::toNativeSeparators(QString::fromWCharArray(path.data()));
}
} // namespace

ProgramFolders programFolders() {
    const QString folder = specialFolder(CSIDL_PROGRAM_FILES);
    return {folder.isEmpty() ? QStringList() : QStringList(folder), FolderMatch::Anywhere};
}

QString musicFolder() {
    const QString folder = specialFolder(CSIDL_MYMUSIC);
    return folder.isEmpty() ? QDir::toNativeSeparators(QDir::homePath()) : folder;
}

QStringList shippedDataFolders(const QString& applicationDir) {
    return {applicationDir};
}
