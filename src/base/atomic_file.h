#pragma once

#include "base/result.h"

#include <QByteArray>

/// Replaces a file in one step: the bytes go to a temporary file beside the target, reach the disk,
/// and take the target's place. On failure the old file stands untouched. Any thread; blocks on
/// disk.
Status replaceFile(const QString& path, const QByteArray& bytes);

/// Moves a file that does not parse out of the way, to a free name beside it, so that no later save
/// overwrites what a person could still rescue. The value is the new path.
Result<QString> setAside(const QString& path);
