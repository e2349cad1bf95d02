#include "audio/effects/compressor.h"

#include "audio/effects/decibel.h"

#include <algorithm>
#include <cmath>

namespace BASS {
namespace {

constexpr std::size_t kStepFrames = 32;
constexpr double kAttackSeconds = 0.008;
/// Slow enough to leave a bass note's shape alone.
constexpr double kReleaseSeconds = 0.25;
constexpr double kEnvelopeSeconds = 0.05;
/// Half of the bend around the threshold, in decibels.
constexpr double kKneeDb = 4.0;
constexpr float kMostPeak = 1000.0F;
constexpr double kNothingDb = 0.001;

double partPerStep(double seconds, int rate) {
    return 1.0 - std::exp(-static_cast<double>(kStepFrames) / (seconds * rate));
}

} // namespace

Compressor::Compressor(int rate)
    : m_thresholdDb(0.0, rate), m_slope(0.0, rate), m_makeUp(1.0, rate),
      m_attack(partPerStep(kAttackSeconds, rate)), m_release(partPerStep(kReleaseSeconds, rate)),
      m_decay(partPerStep(kEnvelopeSeconds, rate)) {}

void Compressor::set(const EffectSettings::Compressor& settings, Transition transition) {
    m_isOn = settings.isOn;
    const bool isUsed = m_slope.value() != 0.0;
    m_thresholdDb.setTarget(static_cast<double>(settings.thresholdDb),
                            isUsed ? transition : Transition::AtOnce);
    m_slope.setTarget(m_isOn ? 1.0 - 1.0 / static_cast<double>(settings.ratio) : 0.0, transition);
    m_makeUp.setTarget(m_isOn ? fromDecibel(static_cast<double>(settings.makeUpDb)) : 1.0,
                       transition);
}

bool Compressor::isActive() const {
    return m_isOn || m_reductionDb != 0.0 || !m_slope.isSteady() || !m_makeUp.isSteady();
}

void Compressor::process(float* samples, std::size_t frames) {
    while (frames > 0) {
        const std::size_t part = std::min(frames, kStepFrames);
        processStep(samples, part);
        samples += 2 * part;
        frames -= part;
    }
}

double Compressor::reductionFor(double peak) const {
    const double over = toDecibel(peak) - m_thresholdDb.value();
    if (over <= -kKneeDb)
        return 0.0;
    if (over >= kKneeDb)
        return m_slope.value() * over;
    return m_slope.value() * (over + kKneeDb) * (over + kKneeDb) / (4.0 * kKneeDb);
}

void Compressor::processStep(float* samples, std::size_t frames) {
    float peak = 0.0F;
    for (std::size_t n = 0; n < 2 * frames; ++n)
        peak = std::max(peak, std::min(std::abs(samples[n]), kMostPeak));
    m_envelope = std::max(static_cast<double>(peak), m_envelope * (1.0 - m_decay));

    const double wanted = reductionFor(m_envelope);
    m_reductionDb += (wanted - m_reductionDb) * (wanted > m_reductionDb ? m_attack : m_release);
    if (wanted == 0.0 && m_reductionDb < kNothingDb)
        m_reductionDb = 0.0;
    const double end = fromDecibel(-m_reductionDb);
    const double step = (end - m_gain) / static_cast<double>(frames);
    for (std::size_t n = 0; n < frames; ++n) {
        m_gain += step;
        m_slope.next();
        m_thresholdDb.next();
        const auto gain = static_cast<float>(m_gain * m_makeUp.next());
        samples[2 * n] *= gain;
        samples[2 * n + 1] *= gain;
    }
    m_gain = end;
}

} // namespace BASS
