#pragma once

#include <chrono>

namespace BASS {

/// When to try a lost station again. Half a second apart in the first half minute, so that a server
/// that restarts is back within a second of its return; a second apart up to two minutes; then ever
/// longer pauses up to 30 seconds, to be no burden to a server that is really gone.
/// The first attempt after a loss comes almost at once.
/// `attempt`: 1-based, since the last good connection; `outage`: since it was lost. Pure; any
/// thread.
std::chrono::milliseconds reconnectPause(int attempt, std::chrono::milliseconds outage);

/// How long a station is waited for when nothing records; while a recording runs there is no limit.
constexpr std::chrono::minutes kPatience{10};

} // namespace BASS
