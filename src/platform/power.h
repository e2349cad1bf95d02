#pragma once

#include "base/result.h"

enum class PowerAction { Shutdown, Sleep, Hibernate };

/// Asks the system to power down or to sleep. Returns before it does; the error says why the
/// system would not. GUI thread.
Status requestPower(PowerAction action);
