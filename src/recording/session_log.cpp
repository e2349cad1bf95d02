#include "recording/session_log.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace BASS {
namespace {

using std::chrono::milliseconds;

const QString kDate = QStringLiteral("yyyy-MM-dd hh:mm:ss");

/// Outside text must not make lines of its own.
QString oneLine(const QString& text) {
    return text.simplified();
}

QString quoted(const QString& text) {
    QString plain = oneLine(text);
    plain.replace(QLatin1Char('"'), QLatin1Char('\''));
    return QLatin1Char('"') + plain + QLatin1Char('"');
}

QString relative(const QString& file, const QString& list) {
    const QString path = QFileInfo(list).dir().relativeFilePath(file);
    // a playlist's line that begins with the mark of a comment would be one
    return path.startsWith(QLatin1Char('#')) ? QStringLiteral("./") + path : path;
}

QString two(qint64 number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

/// Frames of a cue sheet are 1/75 s.
QString cueTime(milliseconds time) {
    const qint64 frames = time.count() * 75 / 1000;
    return QStringLiteral("%1:%2:%3")
        .arg(two(frames / 75 / 60), two(frames / 75 % 60), two(frames % 75));
}

QString clockTime(milliseconds time) {
    const qint64 seconds = time.count() / 1000;
    return QStringLiteral("%1:%2:%3")
        .arg(two(seconds / 3600), two(seconds / 60 % 60), two(seconds % 60));
}

QString titleOf(const SessionLog& log, const Song& song) {
    return oneLine(song.isEmpty() ? log.station : song.track);
}

QString gapText(const RecordingGap& gap) {
    return QStringLiteral("connection lost %1, back %2, after bytes=%3 at %4")
        .arg(gap.from.toString(kDate), gap.to.toString(kDate))
        .arg(gap.bytes)
        .arg(clockTime(gap.at));
}

QString cueFileType(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("mp3") ? QStringLiteral("MP3") : QStringLiteral("WAVE");
}

QStringList pathsOf(const SessionLog& log) {
    QStringList paths;
    for (const SessionLog::Track& track : log.tracks) {
        if (!paths.contains(track.path))
            paths << track.path;
    }
    return paths;
}

QStringList cueLines(const SessionLog& log, bool hasDates, const QString& list) {
    QStringList lines{QStringLiteral("REM DATE ") + quoted(log.started.toString(kDate)),
                      QStringLiteral("REM COMMENT ") + quoted(log.address),
                      QStringLiteral("PERFORMER ") + quoted(log.station),
                      QStringLiteral("TITLE ") + quoted(log.station)};
    int number = 0;
    for (const QString& path : pathsOf(log)) {
        lines << QStringLiteral("FILE %1 %2").arg(quoted(relative(path, list)), cueFileType(path));
        for (const RecordingGap& gap : log.gaps) {
            if (gap.path == path)
                lines << QStringLiteral("  REM GAP ") + gapText(gap);
        }
        for (const SessionLog::Track& track : log.tracks) {
            if (track.path != path)
                continue;
            lines << QStringLiteral("  TRACK %1 AUDIO").arg(two(++number));
            if (hasDates)
                lines << QStringLiteral("    REM DATE ") + quoted(track.when.toString(kDate));
            const Song& song = track.song;
            lines << QStringLiteral("    TITLE ") +
                         quoted(song.title.isEmpty() ? titleOf(log, song) : song.title);
            if (!song.artist.isEmpty())
                lines << QStringLiteral("    PERFORMER ") + quoted(song.artist);
            lines << QStringLiteral("    INDEX 01 ") + cueTime(track.at);
        }
    }
    return lines;
}

qint64 seconds(const SessionLog& log, const QString& path) {
    for (const SessionLog::File& file : log.files) {
        if (file.path == path)
            return (file.duration.count() + 500) / 1000;
    }
    return -1; // still being written: a playlist's word for "not known"
}

QStringList m3uLines(const SessionLog& log, bool hasDates, const QString& list) {
    QStringList lines{QStringLiteral("#EXTM3U")};
    for (const QString& path : pathsOf(log)) {
        QString title;
        for (const SessionLog::Track& track : log.tracks) {
            if (track.path != path)
                continue;
            if (title.isEmpty())
                title = titleOf(log, track.song);
            const QString date =
                hasDates ? track.when.toString(kDate) + QLatin1Char(' ') : QString();
            lines << QStringLiteral("# %1%2 %3")
                         .arg(date, clockTime(track.at), titleOf(log, track.song));
        }
        lines << QStringLiteral("#EXTINF:%1,%2").arg(seconds(log, path)).arg(title)
              << relative(path, list);
    }
    return lines;
}

QStringList textLines(const SessionLog& log, bool hasDates) {
    QStringList lines;
    for (const SessionLog::Track& track : log.tracks) {
        const QString date = hasDates ? track.when.toString(kDate) + QLatin1Char(' ') : QString();
        lines << date + titleOf(log, track.song);
    }
    return lines;
}

QByteArray joined(const QStringList& lines) {
    return lines.isEmpty() ? QByteArray()
                           : (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
}

} // namespace

void SessionLog::rename(const QString& from, const QString& to) {
    const auto renamePath = [&](QString& path) { path = path == from ? to : path; };
    for (Track& track : tracks)
        renamePath(track.path);
    for (File& file : files)
        renamePath(file.path);
    for (RecordingGap& gap : gaps)
        renamePath(gap.path);
}

void SessionLog::forget(const QString& path) {
    const auto isIn = [&](const auto& item) { return item.path == path; };
    tracks.erase(std::remove_if(tracks.begin(), tracks.end(), isIn), tracks.end());
    files.erase(std::remove_if(files.begin(), files.end(), isIn), files.end());
    gaps.erase(std::remove_if(gaps.begin(), gaps.end(), isIn), gaps.end());
}

QString trackListSuffix(const QString& format) {
    const QString known = format.toLower();
    const bool isKnown = known == QLatin1String("cue") || known == QLatin1String("txt");
    return isKnown ? known : QStringLiteral("m3u");
}

QByteArray trackList(const SessionLog& log, const TrackListOptions& options, const QString& path) {
    if (log.tracks.isEmpty())
        return {};
    const QString format = trackListSuffix(options.format);
    if (format == QLatin1String("cue"))
        return joined(cueLines(log, options.hasDates, path));
    return joined(format == QLatin1String("txt") ? textLines(log, options.hasDates)
                                                 : m3uLines(log, options.hasDates, path));
}

QByteArray gapLog(const SessionLog& log) {
    if (log.gaps.isEmpty())
        return {};
    QStringList lines{QStringLiteral("%1 recording station=%2 address=%3")
                          .arg(log.started.toString(kDate), oneLine(log.station), log.address)};
    for (const RecordingGap& gap : log.gaps)
        lines << gapText(gap) + QStringLiteral(" of file=") + QFileInfo(gap.path).fileName();
    return joined(lines);
}

QString recordingComment(const SessionLog& log, const QString& path) {
    QStringList parts;
    if (!log.address.isEmpty())
        parts << QStringLiteral("Recorded from %1").arg(oneLine(log.address));
    for (const RecordingGap& gap : log.gaps) {
        if (gap.path == path)
            parts << gapText(gap);
    }
    return parts.join(QStringLiteral("; "));
}

QByteArray trackLine(const SessionLog::Track& track, const QString& station) {
    return QStringLiteral("%1\t%2\t%3\n")
        .arg(track.when.toString(kDate), oneLine(station), oneLine(track.song.track))
        .toUtf8();
}

} // namespace BASS
