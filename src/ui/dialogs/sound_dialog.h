#pragma once

#include "engine/sound_options.h"

#include <QDialog>

class EqualizerPanel;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QSlider;
class QSpinBox;
class SoundController;

/// Equalizer, loudness and stereo. What is changed is heard and kept at once.
///
/// *Thread*: GUI. *Owner*: the window; the controller outlives it.
class SoundDialog final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SoundDialog)

  public:
    explicit SoundDialog(SoundController& controller, QWidget* parent = nullptr);

  private:
    QWidget* makeLoudness();
    QWidget* makeStereo();
    QSpinBox* addNumber(QFormLayout* form, const char* name, const QString& label);
    void wire();
    void showOptions();
    void change();

    SoundController& m_controller;
    EqualizerPanel* m_equalizer;
    QCheckBox* m_ofStation;
    QCheckBox* m_autoVolume = nullptr;
    QCheckBox* m_compressor = nullptr;
    QComboBox* m_boost = nullptr;
    QSpinBox* m_threshold = nullptr;
    QSpinBox* m_ratio = nullptr;
    QSpinBox* m_gain = nullptr;
    QSlider* m_separation = nullptr;
    QLabel* m_separationText = nullptr;
    QCheckBox* m_mono = nullptr;
    QCheckBox* m_swap = nullptr;
    bool m_isShowing = false; ///< what changes is not the user's doing
};
