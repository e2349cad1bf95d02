#pragma once

#include "recording/c_encoder_params.h"
#include "recording/session_log.h"
#include "stations/song.h"

#include <QDateTime>
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
    /// Stream time from the title to the cut; negative: the cut lies before the title. Up to 200 ms
    /// either way are none.
    std::chrono::milliseconds splitDelay{0};
    std::chrono::seconds splitEvery{0}; ///< of stream time, without splitting by titles; 0: never
    bool isFileReused = true;           ///< false: a new file begins behind every lost connection
    qint64 minFreeBytes = 0;            ///< the recording ends where the disk has less; 0: no limit
    int encoder = 0;                    ///< 0: the stream's own data
    int encodingBitrate = 0;            ///< kbit/s; MP3: 1 to 9 is a quality
    EncoderMode encodingMode = EncoderMode::ConstantBitrate; ///< where the encoder has it
    QString encoderParams;       ///< as CEncoderParams builds them; empty: from bitrate and mode
    QString encoderArguments;    ///< the user's own, for an external program; empty: the usual ones
    bool isM4aUsed = false;      ///< AAC streams become M4A files
    bool isOriginalKept = false; ///< the stream's own data goes beside what is encoded
    bool isSameKept = false;     ///< a stream that is what would be encoded is written as it comes
    bool hasTags = false;        ///< finished files get tags
    bool hasTrackList = false;   ///< a track list, and a log of gaps, are kept beside the files
    TrackListOptions trackList;
    bool isTitleListKept = false; ///< every title is added to "tracks.txt" in the folder
    QString address;              ///< of the stream, without user and password
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
    QDateTime started;
    QString comment; ///< where it comes from and what is missing
};

/// State for the window; emitted a few times a second while bytes come in.
struct RecordingProgress {
    QString path;
    Song song;
    qint64 fileBytes = 0;
    qint64 sessionBytes = 0;
    int files = 0; ///< opened in this session so far
    std::chrono::milliseconds fileDuration{0};
    qint64 freeBytes = -1;              ///< on the disk; -1: not known
    std::chrono::seconds remaining{-1}; ///< until the disk's limit is reached; -1: not known
};

} // namespace BASS

Q_DECLARE_METATYPE(BASS::RecordMode)
Q_DECLARE_METATYPE(BASS::RecordedFile)
Q_DECLARE_METATYPE(BASS::RecordingError)
Q_DECLARE_METATYPE(BASS::RecordingProgress)
