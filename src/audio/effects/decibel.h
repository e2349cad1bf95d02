#pragma once

#include <cmath>

namespace BASS {

/// The factor of a level in decibels.
inline double fromDecibel(double decibel) {
    return std::pow(10.0, decibel / 20.0);
}

/// The level of a factor; nothing is -200.
inline double toDecibel(double factor) {
    constexpr double kNothing = 1e-10;
    return 20.0 * std::log10(factor > kNothing ? factor : kNothing);
}

} // namespace BASS
