#include "engine/reconnect_policy.h"

#include <algorithm>

namespace BASS {

std::chrono::milliseconds reconnectPause(int attempt, std::chrono::milliseconds outage) {
    using namespace std::chrono_literals;
    if (attempt <= 1 || outage < 30s)
        return 500ms;
    if (outage < 2min)
        return 1s;
    // a tenth of the time that it has been away
    return std::min<std::chrono::milliseconds>(outage / 10, 30s);
}

} // namespace BASS
