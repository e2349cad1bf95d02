#pragma once

#include "platform/special_folders.h"

#include <QString>

/// Where the program's own files live. All paths in native separators.
struct DataFolder {
    QString path;
    QString applicationDir;
    bool isPortable = true; ///< outside the folders of installed programs, or chosen by hand
};

/// What the decision depends on.
struct DataFolderInput {
    QString applicationDir;
    ProgramFolders programFolders;
    QString homePath;
    QString chosenFolder; ///< WAVELARK_DATA; empty: not set
};

/// Pure.
DataFolder decideDataFolder(const DataFolderInput& input);

/// The data folder of this process. The application object must exist. Main thread.
DataFolder currentDataFolder();
