#pragma once

#include "recording/recording_types.h"

#include <QDateTime>
#include <QString>

namespace BASS {

/// Where the next file of a recording goes: its pattern's name, or with a time stamp where that is
/// taken. With the option to overwrite, an older file of the name is deleted first, but never
/// `own`, the one that this recording has written last. `extension`: without a dot. Any thread;
/// looks at the disk.
QString freeRecordingPath(const RecordingOptions& options,
                          const Song& song,
                          const QDateTime& now,
                          const QString& extension,
                          const QString& own);

} // namespace BASS
