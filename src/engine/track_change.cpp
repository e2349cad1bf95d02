#include "engine/track_change.h"

namespace BASS {
namespace {
QString comparable(const QString& text) {
    return text.simplified().toCaseFolded();
}
} // namespace

bool isNewTrack(const Song& previous, const Song& song, const TrackChangeContext& context) {
    const QString track = comparable(song.track);
    if (track.isEmpty() || track == QLatin1String("-"))
        return false;
    if (track == comparable(previous.track))
        return false;
    return track != comparable(context.stationName) && track != comparable(context.streamName);
}

} // namespace BASS
