#pragma once

#include "stations/song.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

#include <chrono>

namespace BASS {

/// A hole in a recording: the connection was away. A plain value.
struct RecordingGap {
    QDateTime from;
    QDateTime to;
    qint64 bytes = 0;                ///< written to the file before it
    std::chrono::milliseconds at{0}; ///< of the file's audio
    QString path;                    ///< of the file that goes on behind it
};

/// What a session has recorded so far, as its track list, cue sheet and log tell it. A plain value.
struct SessionLog {
    struct Track {
        Song song;
        QDateTime when;
        QString path;                    ///< of the file that it is in
        std::chrono::milliseconds at{0}; ///< of the file's audio
    };
    struct File {
        QString path;
        std::chrono::milliseconds duration{0};
        qint64 bytes = 0;
    };

    QString station;
    QString address; ///< without user and password
    QDateTime started;
    QVector<Track> tracks;
    QVector<File> files; ///< finished
    QVector<RecordingGap> gaps;

    /// A file has got another name.
    void rename(const QString& from, const QString& to);
    /// A file has stayed empty and is gone, or nobody will ask for it.
    void forget(const QString& path);
};

struct TrackListOptions {
    QString format; ///< "m3u", "cue" or "txt"; anything else is "m3u"
    bool hasDates = true;
};

/// The ending that goes with a format, without a dot.
QString trackListSuffix(const QString& format);
/// The list of what was recorded, to be written to `path`: names of files beside it or below are
/// relative. "m3u": an extended playlist (de facto format, UTF-8) with the titles inside a file as
/// comments; "cue": a cue sheet (CD-recorder format: INDEX in minutes, seconds and 1/75 seconds);
/// "txt": a line a title. Empty: nothing to tell yet.
QByteArray trackList(const SessionLog& log, const TrackListOptions& options, const QString& path);
/// A line a file and a gap; empty without gaps.
QByteArray gapLog(const SessionLog& log);
/// "Recorded from ... Connection lost ..." for the comment of a file.
QString recordingComment(const SessionLog& log, const QString& path);
/// One line of the list of all titles: time, station, title.
QByteArray trackLine(const SessionLog::Track& track, const QString& station);

} // namespace BASS
