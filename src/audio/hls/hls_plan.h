#pragma once

#include "audio/hls/hls_playlist.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

// What to play of a playlist, from where, and when to look again. Pure, any thread.

namespace BASS {

/// Addresses of media playlists in the order in which they are to be tried, each once:
///  1. streams of audio alone, the richest first: variants without pictures, and the audio
///     renditions that variants with pictures name (the default one of a group, else the first that
///     may be chosen without asking);
///  2. streams of sound with pictures, the poorest first: their sound is mostly the same.
[[nodiscard]] std::vector<std::string> hlsChoices(const HlsPlaylist& master);

/// Index of the segment with which to begin: where the playlist says; the first of one that has an
/// end; else the third from the edge (section 6.3.3).
[[nodiscard]] std::size_t hlsFirstSegment(const HlsPlaylist& media);

/// Index of the segment to fetch after `last` (a sequence number).
struct HlsNext {
    enum class What {
        Fetch, ///< the segment `index`
        Wait,  ///< it has not been published yet
        End,   ///< there will be none
    };
    What what = What::Wait;
    std::size_t index = 0;
    bool hasGap = false; ///< what lay between has left the window, or the numbers began anew
};
[[nodiscard]] HlsNext hlsNextSegment(const HlsPlaylist& media, std::uint64_t last);

/// Pause before the playlist is fetched again (section 6.3.4): the target duration after one that
/// had something new, half of it otherwise; between half a second and half a minute.
[[nodiscard]] std::chrono::milliseconds hlsReloadPause(const HlsPlaylist& media, bool hasNew);

/// Without a new segment for so long a station has stopped, whatever its playlist says.
[[nodiscard]] std::chrono::milliseconds hlsPatience(const HlsPlaylist& media);

} // namespace BASS
