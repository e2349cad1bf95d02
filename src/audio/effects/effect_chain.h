#pragma once

#include "audio/effect_settings.h"
#include "audio/effects/auto_volume.h"
#include "audio/effects/compressor.h"
#include "audio/effects/equalizer.h"
#include "audio/effects/limiter.h"
#include "audio/effects/stereo_matrix.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <mutex>

namespace BASS {

/// One channel's effects, in this order: stereo, automatic volume, equalizer, compressor, limiter.
/// Every change is gradual. Without effects the samples are not touched. Nothing is delayed and
/// nothing allocated.
///
/// *Thread*: process() on one thread, the rest on any. *Owner*: the channel.
class EffectChain {
  public:
    explicit EffectChain(int rate);

    void set(const EffectSettings& settings);
    /// Changed in the last seconds, while it is heard: whoever does that wants to hear the next
    /// change soon.
    [[nodiscard]] bool isBeingAdjusted() const;
    /// Decibels that the automatic volume adds now; 0 where it is off.
    [[nodiscard]] float autoGainDb() const { return m_autoGainDb.load(); }
    /// Stereo frames, in place.
    void process(float* samples, std::size_t frames);

  private:
    void takeSettings();
    void processChunk(float* samples, std::size_t frames);
    [[nodiscard]] bool isAnyActive() const;

    std::mutex m_mutex; ///< guards m_wanted
    EffectSettings m_wanted;
    std::atomic<bool> m_isChanged{false};
    std::atomic<float> m_autoGainDb{0.0F};

    std::atomic<std::chrono::milliseconds> m_changedAt{std::chrono::hours(-1)}; ///< steady
    std::atomic<bool> m_hasBegun{false};

    // process() only
    bool m_isActive = false;
    StereoMatrix m_stereo;
    AutoVolume m_autoVolume;
    Equalizer m_equalizer;
    Compressor m_compressor;
    Limiter m_limiter;
};

/// Every value inside its range.
[[nodiscard]] EffectSettings clamped(EffectSettings settings);

} // namespace BASS
