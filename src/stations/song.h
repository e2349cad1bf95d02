#pragma once

#include <QMetaType>
#include <QString>

namespace BASS {

/// A track as heard on a station. A plain value.
struct Song {
    QString track;  ///< the whole title as the stream gave it
    QString artist; ///< empty where the title has no recognisable artist
    QString title;  ///< the song's own title; empty where the track is empty
    QString comment;
    QString url;          ///< "StreamURL" sent with the title
    QString metadata;     ///< the whole decoded metadata text
    qint64 position = -1; ///< audio bytes of its connection before the title; -1: not known

    [[nodiscard]] bool isEmpty() const { return track.isEmpty(); }
};

bool operator==(const Song& a, const Song& b);
inline bool operator!=(const Song& a, const Song& b) {
    return !(a == b);
}

struct SongDisplayOptions {
    QString stationName; ///< not empty: the text begins with it
    bool forMenu = false;
};

/// The text of history menus and tool tips.
QString displayText(const Song& song, const SongDisplayOptions& options);

/// Splits "Artist - Title" at the first " - " (also with an en or em dash); without one the whole
/// track is the title.
Song songFromTrack(const QString& track);

} // namespace BASS

Q_DECLARE_METATYPE(BASS::Song)
