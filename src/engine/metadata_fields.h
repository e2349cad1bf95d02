#pragma once

#include "stations/song.h"

#include <QByteArray>
#include <QString>

#include <optional>

// Titles that stations wrap in fields of their own instead of sending "Artist - Title". No document
// fixes these formats; the rule here is Wavelark's own. Pure, any thread.

namespace BASS {

/// The song that a text tells in named fields; nothing: there are none, and the text itself is the
/// title.
///
/// A field is `name=value` (blanks may surround the sign), its name in any case and not part of a
/// longer word; `"name": value` and a leading `text : value` count, too. The value stands in quotes
/// ('...', "..."), else it ends before '&',
/// ';', '|', a line end, '<', or ", " with a further field behind it. Without quotes "%20" and the
/// like are resolved. An XML element of the name counts as the field.
///  - artist: "currentArtist", then "artist"; title: "currentSong", then "title"
///  - the whole track: "CAPTION" (Windows Media), "text" (both only where no title is named)
///  - "data", "TUNER", "XML": what they hold is read by the same rule, once
///  - "duration" tells no song and is only left out of it
[[nodiscard]] std::optional<Song> songFromFields(const QString& text);

/// What a playlist says of a segment ("10.0,text"): fields as above, else a text with " - " in it.
/// Nothing for anything else: most stations write a file's name there, or "no desc".
[[nodiscard]] std::optional<Song> songFromSegmentInfo(const QByteArray& info);

} // namespace BASS
