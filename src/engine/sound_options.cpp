#include "engine/sound_options.h"

#include <QCoreApplication>
#include <QStringList>
#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace BASS {
namespace {

constexpr std::array<EqualizerPreset, kEqualizerPresetCount> kPresets{{
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Flat"), {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Rock"), {5, 4, 3, 1, -1, -1, 1, 3, 4, 4}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Pop"), {-1, 0, 2, 4, 5, 4, 2, 0, -1, -1}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Jazz"), {3, 3, 2, 2, -2, -2, 0, 2, 3, 4}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Classical"), {0, 0, 0, 0, 0, 0, -2, -3, -3, -4}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Dance"), {6, 6, 4, 1, 0, -2, -2, 0, 3, 3}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Electronic"), {5, 5, 2, 0, -2, 1, 1, 2, 5, 5}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "More bass"), {7, 6, 5, 3, 1, 0, 0, 0, 0, 0}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "More treble"), {0, 0, 0, 0, 0, 1, 3, 5, 6, 7}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Bass and treble"), {6, 5, 3, 0, -2, -2, 0, 3, 5, 6}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Speech"), {-8, -5, -2, 0, 2, 4, 4, 3, 0, -2}},
    {QT_TRANSLATE_NOOP("EqualizerPreset", "Small loudspeakers"), {-12, -6, 2, 5, 4, 1, 0, 1, 2, 3}},
}};

constexpr float kSame = 0.05F;

} // namespace

DynamicBoost dynamicBoostOf(int number) {
    return number >= 0 && number <= 4 ? static_cast<DynamicBoost>(number) : DynamicBoost::Off;
}

EffectSettings effectsFor(const SoundOptions& options) {
    EffectSettings effects;
    effects.equalizer = options.equalizer;
    effects.isAutoVolume = options.isAutoVolume;
    effects.isMono = options.isMono;
    effects.isSwapped = options.isSwapped;
    effects.stereoSeparation = static_cast<float>(options.stereoSeparation);
    return effects;
}

EffectSettings::Compressor compressorFor(DynamicBoost boost) {
    switch (boost) {
    case DynamicBoost::Low:
        return {true, -12.0F, 2.0F, 5.0F};
    case DynamicBoost::Medium:
        return {true, -18.0F, 3.0F, 9.0F};
    case DynamicBoost::High:
        return {true, -24.0F, 4.0F, 14.0F};
    case DynamicBoost::Off:
    case DynamicBoost::Custom:
        break;
    }
    return {};
}

EffectSettings::Compressor gentleCompressor() {
    return {true, -20.0F, 2.5F, 3.0F};
}

const std::array<EqualizerPreset, kEqualizerPresetCount>& equalizerPresets() {
    return kPresets;
}

QString presetName(const EqualizerPreset& preset) {
    return QCoreApplication::translate("EqualizerPreset", preset.name);
}

int presetOf(const EqualizerBands& bands) {
    const auto found =
        std::find_if(kPresets.begin(), kPresets.end(), [&bands](const EqualizerPreset& preset) {
            return std::equal(bands.begin(),
                              bands.end(),
                              preset.bandsDb.begin(),
                              [](float a, float b) { return std::abs(a - b) < kSame; });
        });
    return found == kPresets.end() ? -1 : static_cast<int>(found - kPresets.begin());
}

QString equalizerText(const EqualizerBands& bands) {
    const int preset = presetOf(bands);
    if (preset >= 0)
        return QString::fromLatin1(kPresets[static_cast<std::size_t>(preset)].name);
    QStringList gains;
    for (const float gain : bands)
        gains.append(QString::number(static_cast<double>(gain), 'f', 1));
    return gains.join(QLatin1Char(';'));
}

EqualizerBands bandsFromText(const QString& text) {
    const auto found =
        std::find_if(kPresets.begin(), kPresets.end(), [&text](const EqualizerPreset& preset) {
            return text.compare(QLatin1String(preset.name), Qt::CaseInsensitive) == 0;
        });
    if (found != kPresets.end())
        return found->bandsDb;
    const QStringList gains = text.split(QLatin1Char(';'));
    EqualizerBands result{};
    if (gains.size() != static_cast<int>(result.size()))
        return result;
    for (std::size_t band = 0; band < result.size(); ++band) {
        bool isNumber = false;
        const float gain = gains.at(static_cast<int>(band)).toFloat(&isNumber);
        if (!isNumber || !std::isfinite(gain))
            return {};
        result[band] = std::clamp(gain, -EffectSettings::kMaxBandDb, EffectSettings::kMaxBandDb);
    }
    return result;
}

} // namespace BASS
