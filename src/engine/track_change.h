#pragma once

#include "stations/song.h"

namespace BASS {

/// What the decision about a track change looks at beside the two songs.
struct TrackChangeContext {
    QString stationName; ///< as the user knows the station
    QString streamName;  ///< as the stream's headers call it
};

/// True where `song` begins a new track after `previous`: it has a title, which is neither the
/// running one again (compared without regard to case and blanks) nor only the station's own name.
/// Pure; any thread.
bool isNewTrack(const Song& previous, const Song& song, const TrackChangeContext& context);

} // namespace BASS
