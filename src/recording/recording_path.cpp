#include "recording/recording_path.h"

#include "recording/file_pattern.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace BASS {

QString freeRecordingPath(const RecordingOptions& options,
                          const Song& song,
                          const QDateTime& now,
                          const QString& extension,
                          const QString& own) {
    FileNameContext context;
    context.station = options.station;
    context.song = song;
    context.dateFormat = options.dateFormat;
    context.timeFormat = options.timeFormat;
    context.invalidReplacement = options.invalidReplacement;
    context.isSplit = options.mode != RecordMode::NoSplit;
    context.now = now;
    const QString pattern = context.isSplit ? options.patternSplit : options.patternNoSplit;
    const QString path =
        QDir(options.folder).filePath(relativeRecordingPath(pattern, context, extension));
    if (options.overwrite && path != own)
        QFile::remove(path);
    const QFileInfo taken(path);
    QString free = path;
    for (int attempt = 1; QFileInfo::exists(free); ++attempt)
        free = taken.dir().filePath(
            stampedFileName(taken.fileName(), now, options.invalidReplacement, attempt));
    return free;
}

} // namespace BASS
