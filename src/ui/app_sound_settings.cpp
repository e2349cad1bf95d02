// The part of AppUiSettings that keeps how the sound is shaped.
#include "app/app_settings.h"
#include "ui/app_ui_settings.h"

#include <QCryptographicHash>

#include <cmath>

namespace {

using BASS::StationRecord;

/// Stations without an id of their own are known by their address.
QString keyOf(const StationRecord& station) {
    constexpr int kLength = 16;
    if (!station.stationId.isEmpty()) {
        return station.stationId;
    }
    const QByteArray digest =
        QCryptographicHash::hash(station.playUrl().toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(digest.toHex().left(kLength));
}

bool hasKey(const StationRecord& station) {
    return !station.stationId.isEmpty() || !station.playUrl().isEmpty();
}

bool isLocalFile(const StationRecord& station) {
    const QString address = station.playUrl();
    return !address.isEmpty() && (!address.contains(QLatin1String("://")) ||
                                  address.startsWith(QLatin1String("file:"), Qt::CaseInsensitive));
}

float preampFrom(const QString& text) {
    const float value = text.toFloat();
    constexpr float kMost = BASS::EffectSettings::kMaxBandDb;
    return std::isfinite(value) ? std::max(-kMost, std::min(kMost, value)) : 0.0F;
}

QString preampText(float preampDb) {
    return QString::number(static_cast<double>(preampDb), 'f', 1);
}

template <typename Key, typename Value>
void change(Key& key, const Value& value) {
    if (key() != value) {
        key.set(value);
    }
}

} // namespace

BASS::SoundOptions AppUiSettings::sound(const StationRecord& station) const {
    BASS::SoundOptions sound;
    sound.isEqualizerOfStation =
        hasKey(station) && m_settings.isEqEnabledForStation(keyOf(station));
    if (sound.isEqualizerOfStation) {
        const QString key = keyOf(station);
        sound.equalizer = {true,
                           preampFrom(m_settings.eqPreampForStation(key)),
                           BASS::bandsFromText(m_settings.eqPresetForStation(key))};
    } else {
        sound.equalizer = {m_settings.EqualizerEnabled(),
                           preampFrom(m_settings.EQPreamp()),
                           BASS::bandsFromText(m_settings.EQPreset())};
    }
    sound.isCompressorOn = m_settings.Compressor();
    sound.boost =
        BASS::dynamicBoostOf(isLocalFile(station) ? m_settings.DefaultLocalFileDynamicBoost()
                                                  : m_settings.DynamicBoost());
    sound.customBoost = {true,
                         static_cast<float>(m_settings.DynamicBoostThreshold()),
                         static_cast<float>(m_settings.DynamicBoostRatio()),
                         static_cast<float>(m_settings.DynamicBoostGain())};
    sound.isAutoVolume = m_settings.AutoVolume();
    sound.isMono = m_settings.MonoOutput();
    sound.isSwapped = m_settings.SwapChannels();
    sound.stereoSeparation = qBound(-100, m_settings.StereoSeparation(), 100);
    return sound;
}

void AppUiSettings::setSound(const StationRecord& station, const BASS::SoundOptions& sound) {
    const QString preset = BASS::equalizerText(sound.equalizer.bandsDb);
    const int presetId = BASS::presetOf(sound.equalizer.bandsDb);
    if (sound.isEqualizerOfStation && hasKey(station)) {
        // a station whose own equalizer is off sounds as it is, whatever the others do
        const bool isOn = sound.equalizer.isOn;
        const QString key = keyOf(station);
        m_settings.setEqEnabledForStation(key, true);
        m_settings.setEqPresetForStation(key, isOn ? preset : BASS::equalizerText({}));
        m_settings.setEqPresetIdForStation(key,
                                           isOn ? static_cast<uint>(std::max(0, presetId)) : 0);
        m_settings.setEqPreampForStation(
            key, isOn ? preampText(sound.equalizer.preampDb) : preampText(0.0F));
    } else {
        change(m_settings.EqualizerEnabled, sound.equalizer.isOn);
        change(m_settings.EQPreset, preset);
        change(m_settings.EQPresetID, std::max(0, presetId));
        change(m_settings.EQPreamp, preampText(sound.equalizer.preampDb));
    }
    change(m_settings.Compressor, sound.isCompressorOn);
    change(isLocalFile(station) ? m_settings.DefaultLocalFileDynamicBoost : m_settings.DynamicBoost,
           static_cast<int>(sound.boost));
    change(m_settings.DynamicBoostThreshold, qRound(sound.customBoost.thresholdDb));
    change(m_settings.DynamicBoostRatio, qRound(sound.customBoost.ratio));
    change(m_settings.DynamicBoostGain, qRound(sound.customBoost.makeUpDb));
    change(m_settings.AutoVolume, sound.isAutoVolume);
    change(m_settings.MonoOutput, sound.isMono);
    change(m_settings.SwapChannels, sound.isSwapped);
    change(m_settings.StereoSeparation, sound.stereoSeparation);
}

void AppUiSettings::forgetStationEqualizer(const StationRecord& station) {
    if (hasKey(station)) {
        m_settings.setEqEnabledForStation(keyOf(station), false);
    }
}

MeterKind AppUiSettings::meterKind() const {
    if (!m_settings.PeakMeterEnabled()) {
        return MeterKind::None;
    }
    return m_settings.PeakMeterSpectrum() ? MeterKind::Spectrum : MeterKind::Level;
}

PeakMeterLook AppUiSettings::peakMeter() const {
    const auto colour = [](const TextSetting& setting) {
        const QColor stored(setting());
        return stored.isValid() ? stored : QColor(setting.defaultText());
    };
    return {meterKind(),
            colour(m_settings.PeakBackColor),
            colour(m_settings.PeakBarColorTop),
            colour(m_settings.PeakBarColorBottom)};
}
