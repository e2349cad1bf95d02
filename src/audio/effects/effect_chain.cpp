#include "audio/effects/effect_chain.h"

#include <algorithm>
#include <cmath>

namespace BASS {
namespace {

/// Small enough to stay in the cache from one effect to the next.
constexpr std::size_t kChunkFrames = 1024;

constexpr std::chrono::seconds kAdjusting{10};

std::chrono::milliseconds now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

void clampTo(float& value, float least, float most, float otherwise) {
    value = std::isnan(value) ? otherwise : std::clamp(value, least, most);
}

} // namespace

EffectSettings clamped(EffectSettings settings) {
    constexpr float kMost = EffectSettings::kMaxBandDb;
    clampTo(settings.equalizer.preampDb, -kMost, kMost, 0.0F);
    for (float& band : settings.equalizer.bandsDb)
        clampTo(band, -kMost, kMost, 0.0F);
    clampTo(settings.compressor.thresholdDb, -60.0F, 0.0F, 0.0F);
    clampTo(settings.compressor.ratio, 1.0F, 20.0F, 1.0F);
    clampTo(settings.compressor.makeUpDb, 0.0F, 24.0F, 0.0F);
    clampTo(settings.autoVolumeStartDb,
            static_cast<float>(AutoVolume::kLeastDb),
            static_cast<float>(AutoVolume::kMostDb),
            0.0F);
    clampTo(settings.stereoSeparation, -100.0F, 100.0F, 0.0F);
    return settings;
}

EffectChain::EffectChain(int rate)
    : m_stereo(rate), m_autoVolume(rate), m_equalizer(rate), m_compressor(rate), m_limiter(rate) {}

void EffectChain::set(const EffectSettings& settings) {
    const std::lock_guard lock(m_mutex);
    m_wanted = clamped(settings);
    if (m_hasBegun.load())
        m_changedAt.store(now());
    m_isChanged.store(true);
}

bool EffectChain::isBeingAdjusted() const {
    return now() - m_changedAt.load() < kAdjusting;
}

void EffectChain::takeSettings() {
    EffectSettings settings;
    {
        const std::lock_guard lock(m_mutex);
        m_isChanged.store(false);
        settings = m_wanted;
    }
    const Transition transition = m_hasBegun ? Transition::Gradual : Transition::AtOnce;
    m_stereo.set(settings, transition);
    m_autoVolume.set(
        settings.isAutoVolume, static_cast<double>(settings.autoVolumeStartDb), transition);
    m_equalizer.set(settings.equalizer, transition);
    m_compressor.set(settings.compressor, transition);
    m_limiter.setOn(settings.isAutoVolume || settings.equalizer.isOn || settings.compressor.isOn ||
                    settings.stereoSeparation > 0.0F);
    m_isActive = isAnyActive();
}

bool EffectChain::isAnyActive() const {
    return m_stereo.isActive() || m_autoVolume.isActive() || m_equalizer.isActive() ||
           m_compressor.isActive() || m_limiter.isActive();
}

void EffectChain::process(float* samples, std::size_t frames) {
    if (m_isChanged.load())
        takeSettings();
    m_hasBegun = true;
    if (!m_isActive)
        return;
    while (frames > 0) {
        const std::size_t part = std::min(frames, kChunkFrames);
        processChunk(samples, part);
        samples += 2 * part;
        frames -= part;
    }
    m_isActive = isAnyActive();
    m_autoGainDb.store(static_cast<float>(m_autoVolume.gainDb()));
}

void EffectChain::processChunk(float* samples, std::size_t frames) {
    if (m_stereo.isActive())
        m_stereo.process(samples, frames);
    if (m_autoVolume.isActive())
        m_autoVolume.process(samples, frames);
    if (m_equalizer.isActive())
        m_equalizer.process(samples, frames);
    if (m_compressor.isActive())
        m_compressor.process(samples, frames);
    if (m_limiter.isActive())
        m_limiter.process(samples, frames);
}

} // namespace BASS
