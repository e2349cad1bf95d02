#pragma once

#include "audio/effects/loudness_meter.h"
#include "audio/effects/smoothed_value.h"

#include <cstddef>

namespace BASS {

/// Brings a source to EffectSettings::kTargetLufs by one gain that follows the loudness of the last
/// minute: quickly while a source is new, then too slowly to be heard as pumping. Any one thread.
class AutoVolume {
  public:
    static constexpr double kMostDb = 12.0;
    static constexpr double kLeastDb = -24.0;

    explicit AutoVolume(int rate);

    /// startDb: where to begin, from kLeastDb to kMostDb.
    void set(bool isOn, double startDb, Transition transition);
    /// False: it would change nothing, now and until the next set().
    [[nodiscard]] bool isActive() const;
    [[nodiscard]] double gainDb() const { return m_gainDb; }
    void process(float* samples, std::size_t frames);

  private:
    void follow();

    LoudnessMeter m_meter;
    SmoothedValue m_gain;
    double m_gainDb = 0.0; ///< where m_gain goes
    bool m_isOn = false;
};

} // namespace BASS
