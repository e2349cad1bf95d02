#pragma once

#include "stations/song.h"

#include <QMetaType>
#include <QString>

#include <chrono>

namespace BASS {

/// How the user asked for a recording.
enum class RecordMode {
    None,
    FromSettings, ///< "Record"
    Split,        ///< "Record (Split)": one file per track
    NoSplit,      ///< "Record (No Split)": one file
    SingleSong,   ///< the running or next song, then stop
};

/// What a file-name pattern can name beside the song. A plain value.
struct PatternValues {
    QString station;
    QString country;
    QString state;
    QString city;
    QString schedule;
};

/// Everything that a recording needs to know, filled by its owner from settings and station.
struct RecordingOptions {
    QString folder;                      ///< absolute; made where it is missing
    RecordMode mode = RecordMode::Split; ///< Split, NoSplit or SingleSong
    QString patternSplit;
    QString patternNoSplit;
    QString dateFormat; ///< Qt date format, for the mode in use
    QString timeFormat; ///< Qt time format
    QString invalidReplacement = QStringLiteral("_");
    bool overwrite = false;
    bool isMp3CutByteExact =
        false; ///< no pre-roll and no Info frame: files join to the served bytes
    std::chrono::milliseconds splitDelay{0}; ///< stream time from the title to the cut
    int encoder = 0;                         ///< 0: the stream's own data
    PatternValues station;
};

/// Kinds of recording errors; the numbers are fixed.
enum class RecordingErrorKind {
    Internal = 0,
    Library = 1,
    MissingEncoder = 2,
    CannotCreateFile = 3,
    CannotWrite = 4,
    EncoderStopped = 5,
};

struct RecordingError {
    RecordingErrorKind kind = RecordingErrorKind::Internal;
    QString message; ///< the kind's text
    QString detail;  ///< the operating system's reason, or empty
};

/// A file that has been closed and is complete.
struct RecordedFile {
    QString path;
    Song song;
    qint64 bytes = 0;
    std::chrono::milliseconds duration{0}; ///< of the audio in it
};

/// State for the window; emitted a few times a second while bytes come in.
struct RecordingProgress {
    QString path;
    Song song;
    qint64 fileBytes = 0;
    qint64 sessionBytes = 0;
    int files = 0; ///< opened in this session so far
    std::chrono::milliseconds fileDuration{0};
};

} // namespace BASS

Q_DECLARE_METATYPE(BASS::RecordMode)
Q_DECLARE_METATYPE(BASS::RecordedFile)
Q_DECLARE_METATYPE(BASS::RecordingError)
Q_DECLARE_METATYPE(BASS::RecordingProgress)
