#pragma once

#include "app/data_folder.h"
#include "base/result.h"

#include <QStringList>

/// What the removal of a user's settings and data depends on.
struct RemovalInput {
    DataFolder folder;
    QString homePath;
};

/// What would be deleted, recursively where it is a folder.
struct RemovalPlan {
    QStringList paths;
};

/// Decides what "/uninstall" deletes: the data folder whole, where it is the program's alone; in a
/// portable folder, which holds the program or recordings as well, only the files that the program
/// keeps there. An error where the folder is none that may be deleted (the root, the home folder or
/// one above it, or no data folder at all). Looks at the disk, changes nothing.
Result<RemovalPlan> planRemoval(const RemovalInput& input);

/// Deletes it; links are removed, not followed. The error names the first thing that stays.
Status removeProgramData(const RemovalPlan& plan);
