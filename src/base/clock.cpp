#include "base/clock.h"

std::chrono::milliseconds SystemClock::steady() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

QDateTime SystemClock::now() const {
    return QDateTime::currentDateTime();
}
