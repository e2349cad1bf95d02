#pragma once

#include "recording/recording_types.h"
#include "stations/rec_info.h"

namespace BASS {

// What becomes of a recording's options where the station has its own. Pure functions, any thread.

/// The mode in force where the user asked for one; only "from the settings" leaves it to the
/// station.
RecordMode stationRecordMode(RecordMode asked, const RecInfo& station);

/// The settings' options with the station's own in their place. The station's split delay in
/// seconds counts where the options have none in milliseconds.
RecordingOptions withStationOptions(RecordingOptions options, const RecInfo& station);

} // namespace BASS
