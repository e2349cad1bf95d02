#pragma once

#include "recording/recording_types.h"

#include <QDateTime>
#include <QString>

namespace BASS {

// How a recording's file is called. Pure functions, any thread; texts of any origin and length are
// allowed.

/// What a name is made from.
struct FileNameContext {
    PatternValues station;
    Song song;
    QString dateFormat; ///< Qt date format; empty: "dd.MMM.yyyy"
    QString timeFormat; ///< Qt time format; empty: "h.mm.ss AP"
    QString invalidReplacement = QStringLiteral("_");
    bool isSplit = false;
    QDateTime now; ///< taken once for the whole name
};

/// Replaces the placeholders in their fixed order; backslashes stay.
QString expandPattern(const QString& pattern, const FileNameContext& context);

/// Drops invalid characters and blanks at the end and replaces the other invalid ones.
QString cleanName(const QString& text, const QString& replacement);

/// The name where no pattern gives one.
QString defaultRecordingTitle(const FileNameContext& context);

/// One component of a path that is a plain, visible, storable name on every system; empty where
/// nothing of the text can stand. It leaves room for an extension and a time stamp.
QString safeComponent(const QString& text, const QString& replacement);

/// The path below the recording folder, "/" between the folders, with the extension. The pattern's
/// own backslashes are the only separators; every value that holds one has it replaced.
QString relativeRecordingPath(const QString& pattern,
                              const FileNameContext& context,
                              const QString& extension);

/// The name beside one that is taken: the time stamp stands before the first dot. `attempt`: 1 and
/// up; later ones add the number.
QString stampedFileName(const QString& fileName,
                        const QDateTime& now,
                        const QString& replacement,
                        int attempt);

} // namespace BASS
