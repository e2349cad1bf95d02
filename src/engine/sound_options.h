#pragma once

#include "audio/effect_settings.h"

#include <QString>

#include <array>

// What the user hears of a station beside its volume, as the settings keep it. Pure; any thread.

namespace BASS {

/// Makes quiet programmes louder. The numbers are those of the settings and of station lists.
enum class DynamicBoost { Off = 0, Low = 1, Medium = 2, High = 3, Custom = 4 };
/// Off for a number that is none.
[[nodiscard]] DynamicBoost dynamicBoostOf(int number);

struct SoundOptions {
    EffectSettings::Equalizer equalizer;
    bool isEqualizerOfStation = false; ///< its own, in place of the general one
    bool isCompressorOn = false;       ///< evens loud and quiet out; a boost does so more
    DynamicBoost boost = DynamicBoost::Off;
    EffectSettings::Compressor customBoost{true, -18.0F, 3.0F, 9.0F};
    bool isAutoVolume = false;
    bool isMono = false;
    bool isSwapped = false;
    int stereoSeparation = 0; ///< per cent, -100 to 100
};

/// What the library has to do for them; the compressor apart.
[[nodiscard]] EffectSettings effectsFor(const SoundOptions& options);
/// low, medium or high
[[nodiscard]] EffectSettings::Compressor compressorFor(DynamicBoost boost);
/// Of the compressor alone, without a boost.
[[nodiscard]] EffectSettings::Compressor gentleCompressor();

using EqualizerBands = std::array<float, EffectSettings::kBands>;

struct EqualizerPreset {
    const char* name; ///< English; what files hold
    EqualizerBands bandsDb;
};
/// The first one changes nothing.
constexpr std::size_t kEqualizerPresetCount = 12;
[[nodiscard]] const std::array<EqualizerPreset, kEqualizerPresetCount>& equalizerPresets();
/// Its name in the user's language.
[[nodiscard]] QString presetName(const EqualizerPreset& preset);
/// Place of the preset with these bands; -1: none has them.
[[nodiscard]] int presetOf(const EqualizerBands& bands);

/// The preset's name, or the ten gains with semicolons between them.
[[nodiscard]] QString equalizerText(const EqualizerBands& bands);
/// The other way round. Texts that are neither change nothing.
[[nodiscard]] EqualizerBands bandsFromText(const QString& text);

} // namespace BASS
