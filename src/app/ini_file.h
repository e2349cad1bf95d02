#pragma once

#include "base/result.h"

#include <QVariantMap>

/// Tells one state of a file from another without reading it. All zero: no such file.
struct FileStamp {
    qint64 bytes = 0;
    qint64 changed = 0; ///< finest time that the file system keeps, arbitrary zero
    bool operator==(const FileStamp& other) const {
        return bytes == other.bytes && changed == other.changed;
    }
    bool operator!=(const FileStamp& other) const { return !(*this == other); }
};

FileStamp fileStamp(const QString& path);

enum class IniState {
    Missing,
    Good,
    Damaged,    ///< holds what could be rescued
    Unreadable, ///< the system refuses to read it
};

/// What a settings file held at one moment.
struct IniSnapshot {
    IniState state = IniState::Missing;
    QVariantMap values;
    FileStamp stamp;
    QString problem; ///< for the user, where the state is Unreadable
};

IniSnapshot loadIni(const QString& path);

/// What a merge left behind.
struct IniMerge {
    IniSnapshot snapshot;
    QString setAsidePath; ///< not empty: the file was damaged and lies here now
};

/// Applies changes to a settings file that other processes change as well: under the file's lock it
/// is read anew, only the named keys are replaced (an invalid variant removes its key), and the
/// result takes the file's place in one step. A damaged file is set aside first; the new one then
/// begins with what could be rescued, laid over `lastGood`. A file that already says all this is
/// not written. The lock is the one that QSettings takes itself ("<path>.lock").
/// Any thread; blocks on the disk and up to some seconds on other processes.
Result<IniMerge>
mergeIni(const QString& path, const QVariantMap& changes, const QVariantMap& lastGood);
