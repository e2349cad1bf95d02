#pragma once

#include <array>
#include <cstddef>

namespace BASS {

/// How a channel's sound is shaped before it is encoded and heard: plain numbers. Values beyond
/// their range are taken as the nearest one inside, what is no number as "off". A default-made
/// value changes nothing and costs nothing.
struct EffectSettings {
    static constexpr std::size_t kBands = 10;
    static constexpr float kMaxBandDb = 12.0F;
    /// Hz, an octave apart.
    static constexpr std::array<float, kBands> kFrequencies{
        31.25F, 62.5F, 125.0F, 250.0F, 500.0F, 1000.0F, 2000.0F, 4000.0F, 8000.0F, 16000.0F};

    /// At a band's frequency the whole has that band's gain, whatever its neighbours have.
    struct Equalizer {
        bool isOn = false;
        float preampDb = 0.0F;               ///< -kMaxBandDb to kMaxBandDb, as the bands
        std::array<float, kBands> bandsDb{}; ///< one gain for each of kFrequencies
    };
    /// What is louder than the threshold is held back; then all is made louder. Both sides alike.
    struct Compressor {
        bool isOn = false;
        float thresholdDb = -18.0F; ///< -60 to 0, of full scale
        float ratio = 3.0F;         ///< 1 to 20: decibels in for one decibel out
        float makeUpDb = 0.0F;      ///< 0 to 24
    };

    Equalizer equalizer;
    Compressor compressor;
    /// Brings every source to kTargetLufs, slowly.
    bool isAutoVolume = false;
    /// Where isAutoVolume begins while the source's loudness is not known yet: what
    /// BASS_ATTRIB_AUTO_GAIN said of the same source before. -24 to 12.
    float autoVolumeStartDb = 0.0F;
    /// Per cent: -100 the middle only (mono), 0 as it is, 100 the sides twice as strong.
    float stereoSeparation = 0.0F;
    bool isMono = false;
    bool isSwapped = false; ///< left is right

    /// Loudness by ITU-R BS.1770 that isAutoVolume aims at: within what EBU R 128 s2 asks of
    /// streams.
    static constexpr float kTargetLufs = -18.0F;
};

/// As a default-made value: the sound stays as it is.
[[nodiscard]] inline bool isChangingNothing(const EffectSettings& settings) {
    return !settings.equalizer.isOn && !settings.compressor.isOn && !settings.isAutoVolume &&
           settings.stereoSeparation == 0.0F && !settings.isMono && !settings.isSwapped;
}

} // namespace BASS
