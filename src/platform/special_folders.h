#pragma once

#include <QStringList>

/// How a path is held against the folders that installed programs live in.
enum class FolderMatch {
    Anywhere, ///< the folder's text occurs anywhere in the path, letter case ignored
    AtStart,  ///< the path lies inside the folder, letter case counts
};

/// Where the system keeps installed programs. Any thread.
struct ProgramFolders {
    QStringList folders; ///< native separators
    FolderMatch match;
};

/// Windows: the Program Files folder. Linux: the folders that packages install to.
ProgramFolders programFolders();

/// The user's music folder, native separators. Never empty. Any thread.
QString musicFolder();

/// Folders that may hold the data files shipped with the program, best first. Any thread.
QStringList shippedDataFolders(const QString& applicationDir);
