#include "audio/effects/limiter.h"

#include <algorithm>
#include <cmath>

namespace BASS {
namespace {

constexpr float kFallSeconds = 0.002F;
constexpr double kRecoverSeconds = 0.15;
constexpr double kNear = 1e-5;

} // namespace

Limiter::Limiter(int rate)
    : m_fall(1.0F / (kFallSeconds * static_cast<float>(rate))),
      m_recover(1.0 / (kRecoverSeconds * rate)) {}

void Limiter::process(float* samples, std::size_t frames) {
    while (frames > 0) {
        const std::size_t part = std::min(frames, kBlockFrames);
        processBlock(samples, part);
        samples += 2 * part;
        frames -= part;
    }
}

void Limiter::processBlock(float* samples, std::size_t frames) {
    bool isTooLoud = false;
    for (std::size_t n = 0; m_isOn && n < frames; ++n) {
        const float peak = std::max(std::abs(samples[2 * n]), std::abs(samples[2 * n + 1]));
        const bool isOver = !(peak <= kCeiling); // also what is no number
        m_gains[n] = isOver ? kCeiling / peak : 1.0F;
        isTooLoud = isTooLoud || isOver;
    }
    if (!isTooLoud && m_gain == 1.0)
        return;
    if (!m_isOn)
        std::fill_n(m_gains.begin(), frames, 1.0F);
    for (std::size_t n = frames - 1; n-- > 0;) // down in time for what comes
        m_gains[n] = std::min(m_gains[n], m_gains[n + 1] + m_fall);
    for (std::size_t n = 0; n < frames; ++n) {
        double gain = m_gain + (1.0 - m_gain) * m_recover;
        if (1.0 - gain < kNear)
            gain = 1.0;
        m_gain = std::min(gain, static_cast<double>(m_gains[n]));
        for (float* sample : {&samples[2 * n], &samples[2 * n + 1]}) {
            *sample *= static_cast<float>(m_gain);
            if (m_isOn)
                *sample = std::isnan(*sample) ? 0.0F : std::clamp(*sample, -kCeiling, kCeiling);
        }
    }
}

} // namespace BASS
