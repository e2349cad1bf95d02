#pragma once

#include "engine/sound_options.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QSlider;

/// Ten bands, the pre-amplifier and the presets. It shows what it is given and tells of changes.
///
/// *Thread*: GUI. *Owner*: its dialog.
class EqualizerPanel final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(EqualizerPanel)

  public:
    explicit EqualizerPanel(QWidget* parent = nullptr);

    void showEqualizer(const BASS::EffectSettings::Equalizer& equalizer);

  signals:
    void sig_changed(const BASS::EffectSettings::Equalizer& equalizer);

  private:
    struct Band {
        QSlider* slider = nullptr;
        QLabel* value = nullptr;
    };
    Band addBand(QHBoxLayout* row, const char* name, const QString& label);
    void showBand(const Band& band, float gainDb);
    void changed(bool isOn);
    void choosePreset(int index);
    [[nodiscard]] BASS::EffectSettings::Equalizer equalizer() const;

    QCheckBox* m_isOn;
    QComboBox* m_preset;
    Band m_preamp;
    std::array<Band, BASS::EffectSettings::kBands> m_bands;
    bool m_isShowing = false; ///< what moves is not the user
};
