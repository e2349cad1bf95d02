#pragma once

#include "audio/effect_settings.h"
#include "audio/effects/smoothed_value.h"

#include <cstddef>

namespace BASS {

/// Makes what is quiet as good as loud: holds back what is above a threshold, by its peaks and both
/// sides alike, then makes all louder. Peaks above full scale are the Limiter's. Any one thread.
class Compressor {
  public:
    explicit Compressor(int rate);

    /// settings: in range.
    void set(const EffectSettings::Compressor& settings, Transition transition);
    /// False: it would change nothing, now and until the next set().
    [[nodiscard]] bool isActive() const;
    void process(float* samples, std::size_t frames);

  private:
    void processStep(float* samples, std::size_t frames);
    [[nodiscard]] double reductionFor(double peak) const;

    bool m_isOn = false;
    SmoothedValue m_thresholdDb;
    SmoothedValue m_slope; ///< decibels held back for one above the threshold; 0: off
    SmoothedValue m_makeUp;
    const double m_attack; ///< part of the way that is gone in one step
    const double m_release;
    const double m_decay;
    double m_envelope = 0.0;    ///< of the peaks, decaying
    double m_reductionDb = 0.0; ///< held back now, positive
    double m_gain = 1.0;        ///< of it, where the last step ended
};

} // namespace BASS
