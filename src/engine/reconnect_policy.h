#pragma once

#include <chrono>

namespace BASS {

/// When to try a lost station again. Half a second apart in the first half minute, so that a server
/// that restarts is back within a second of its return; a second apart up to two minutes; then ever
/// longer pauses up to 30 seconds, to be no burden to a server that is really gone.
/// `attempt`: 1-based, since the last good connection; `outage`: since it was lost. Pure; any
/// thread.
std::chrono::milliseconds reconnectPause(int attempt, std::chrono::milliseconds outage);

} // namespace BASS
