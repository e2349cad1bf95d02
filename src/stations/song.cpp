#include "stations/song.h"

#include <QStringList>

namespace BASS {

bool operator==(const Song& a, const Song& b) {
    return a.track == b.track && a.artist == b.artist && a.title == b.title &&
           a.comment == b.comment && a.url == b.url;
}

QString displayText(const Song& song, const SongDisplayOptions& options) {
    QString text;
    if (!options.stationName.isEmpty())
        text = options.stationName + QStringLiteral(": ");
    // the main text is the artist where there is one, the secondary text the song's title
    const QString& main = song.artist.isEmpty() ? song.track : song.artist;
    const QString secondary = song.artist.isEmpty() ? QString() : song.title;
    if (secondary.isEmpty()) {
        text += main;
    } else {
        // every hyphen goes, also those inside a name: kept as it always was
        const auto bare = [](QString part) { return part.remove(QLatin1Char('-')); };
        text += QStringLiteral("%1 - %2").arg(bare(main), bare(secondary));
    }
    if (!options.forMenu)
        return text;
    text.replace(QLatin1Char('&'), QStringLiteral("&&"));
    constexpr int kMenuLength = 50;
    return text.length() > kMenuLength ? text.left(kMenuLength) + QStringLiteral("...") : text;
}

Song songFromTrack(const QString& track) {
    Song song;
    song.track = track;
    song.title = track.trimmed();
    int at = -1;
    const QStringList separators{
        QStringLiteral(" - "), QStringLiteral(" \u2013 "), QStringLiteral(" \u2014 ")};
    for (const QString& separator : separators) {
        const int found = track.indexOf(separator);
        if (found > 0 && (at < 0 || found < at))
            at = found;
    }
    constexpr int kSeparatorLength = 3;
    if (at < 0)
        return song;
    const QString artist = track.left(at).trimmed();
    const QString title = track.mid(at + kSeparatorLength).trimmed();
    if (artist.isEmpty() || title.isEmpty())
        return song;
    song.artist = artist;
    song.title = title;
    return song;
}

} // namespace BASS
