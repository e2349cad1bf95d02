#include "audio/effects/auto_volume.h"

#include "audio/effect_settings.h"
#include "audio/effects/decibel.h"

#include <algorithm>

namespace BASS {
namespace {

/// Decibels in the 100 ms between two looks, by how much is known (in blocks of 100 ms).
double fastest(std::size_t knownBlocks) {
    constexpr std::size_t kNew = 30;
    constexpr std::size_t kSettling = 100;
    if (knownBlocks < kNew)
        return 0.6;
    return knownBlocks < kSettling ? 0.2 : 0.04;
}

} // namespace

AutoVolume::AutoVolume(int rate) : m_meter(rate), m_gain(1.0, rate) {}

void AutoVolume::set(bool isOn, double startDb, Transition transition) {
    if (isOn && !m_isOn) {
        m_meter.reset();
        m_gainDb = startDb;
    } else if (!isOn) {
        m_gainDb = 0.0;
    }
    m_gain.setTarget(fromDecibel(m_gainDb), transition);
    m_isOn = isOn;
}

bool AutoVolume::isActive() const {
    return m_isOn || !m_gain.isSteady();
}

void AutoVolume::process(float* samples, std::size_t frames) {
    if (m_isOn && m_meter.add(samples, frames))
        follow();
    for (std::size_t n = 0; n < frames; ++n) {
        const auto gain = static_cast<float>(m_gain.next());
        samples[2 * n] *= gain;
        samples[2 * n + 1] *= gain;
    }
}

void AutoVolume::follow() {
    const double lufs = m_meter.lufs();
    if (lufs == LoudnessMeter::kUnknown)
        return;
    const double wanted =
        std::clamp(static_cast<double>(EffectSettings::kTargetLufs) - lufs, kLeastDb, kMostDb);
    const double most = fastest(m_meter.knownBlocks());
    m_gainDb += std::clamp(wanted - m_gainDb, -most, most);
    m_gain.setTarget(fromDecibel(m_gainDb));
}

} // namespace BASS
