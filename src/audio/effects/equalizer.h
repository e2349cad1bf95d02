#pragma once

#include "audio/effect_settings.h"
#include "audio/effects/biquad.h"
#include "audio/effects/smoothed_value.h"

#include <array>
#include <cstddef>

namespace BASS {

/// Ten bands and a pre-amplifier. Gains move in small steps, which
/// does not click. Any one thread.
class Equalizer {
  public:
    explicit Equalizer(int rate);

    /// settings: in range.
    void set(const EffectSettings::Equalizer& settings, Transition transition);
    /// False: it would change nothing, now and until the next set().
    [[nodiscard]] bool isActive() const;
    void process(float* samples, std::size_t frames);

  private:
    using Gains = std::array<double, EffectSettings::kBands>;
    [[nodiscard]] Gains bandGains(const std::array<float, EffectSettings::kBands>& wanted) const;
    [[nodiscard]] bool isBandActive(std::size_t band) const;
    bool moveBands();
    void amplify(float* samples, std::size_t frames);
    void filter(float* samples, std::size_t frames);

    const int m_rate;
    SmoothedValue m_preamp;
    std::array<StereoBiquad, EffectSettings::kBands> m_filters;
    Gains m_gains{}; ///< of each filter, decibels
    Gains m_targets{};
};

} // namespace BASS
