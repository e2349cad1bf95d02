#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace BASS {

/// What a text that was fetched in place of audio turned out to be.
enum class PlaylistKind {
    None,
    Hls, ///< RFC 8216: it is played itself, its entries are segments or variants
    Pls,
    M3u,
    Asx,
    Xspf,
    Html, ///< an answer that only points elsewhere
    Plain,
};

struct Playlist {
    PlaylistKind kind = PlaylistKind::None;
    QStringList addresses; ///< in the file's order; each contains "://"
    QString message; ///< why there are none: "No data found", "No urls found" or "Nothing found"
};

/// Reads a playlist by its content; `address` resolves relative entries. At most 1 MB of the text
/// and 1,000 entries are looked at. Pure, any thread, never throws.
Playlist parsePlaylist(const QByteArray& text, const QString& address);

} // namespace BASS
