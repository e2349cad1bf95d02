#pragma once

#include "audio/effect_settings.h"
#include "audio/effects/smoothed_value.h"

#include <cstddef>

namespace BASS {

/// Width, mono and swapped sides in one: what each side gets of both. Any one thread.
class StereoMatrix {
  public:
    explicit StereoMatrix(int rate);

    /// settings: in range.
    void set(const EffectSettings& settings, Transition transition);
    /// False: it would change nothing, now and until the next set().
    [[nodiscard]] bool isActive() const;
    void process(float* samples, std::size_t frames);

  private:
    [[nodiscard]] bool isSteady() const;

    SmoothedValue m_leftFromLeft;
    SmoothedValue m_leftFromRight;
    SmoothedValue m_rightFromLeft;
    SmoothedValue m_rightFromRight;
};

} // namespace BASS
