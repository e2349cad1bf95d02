#include "audio/effects/stereo_matrix.h"

namespace BASS {

StereoMatrix::StereoMatrix(int rate)
    : m_leftFromLeft(1.0, rate), m_leftFromRight(0.0, rate), m_rightFromLeft(0.0, rate),
      m_rightFromRight(1.0, rate) {}

void StereoMatrix::set(const EffectSettings& settings, Transition transition) {
    // the sides are what left and right differ in
    const double side =
        settings.isMono ? 0.0 : 1.0 + static_cast<double>(settings.stereoSeparation) / 100.0;
    const double same = (1.0 + side) / 2.0;
    const double other = (1.0 - side) / 2.0;
    m_leftFromLeft.setTarget(settings.isSwapped ? other : same, transition);
    m_leftFromRight.setTarget(settings.isSwapped ? same : other, transition);
    m_rightFromLeft.setTarget(settings.isSwapped ? same : other, transition);
    m_rightFromRight.setTarget(settings.isSwapped ? other : same, transition);
}

bool StereoMatrix::isSteady() const {
    return m_leftFromLeft.isSteady() && m_leftFromRight.isSteady() && m_rightFromLeft.isSteady() &&
           m_rightFromRight.isSteady();
}

bool StereoMatrix::isActive() const {
    return !isSteady() || m_leftFromLeft.value() != 1.0 || m_leftFromRight.value() != 0.0;
}

void StereoMatrix::process(float* samples, std::size_t frames) {
    const bool isStill = isSteady();
    double ll = m_leftFromLeft.value();
    double lr = m_leftFromRight.value();
    double rl = m_rightFromLeft.value();
    double rr = m_rightFromRight.value();
    for (std::size_t n = 0; n < frames; ++n) {
        if (!isStill) {
            ll = m_leftFromLeft.next();
            lr = m_leftFromRight.next();
            rl = m_rightFromLeft.next();
            rr = m_rightFromRight.next();
        }
        const auto left = static_cast<double>(samples[2 * n]);
        const auto right = static_cast<double>(samples[2 * n + 1]);
        samples[2 * n] = static_cast<float>(ll * left + lr * right);
        samples[2 * n + 1] = static_cast<float>(rl * left + rr * right);
    }
}

} // namespace BASS
