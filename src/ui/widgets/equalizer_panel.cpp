#include "ui/widgets/equalizer_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QScopedValueRollback>
#include <QSlider>

#include <cmath>

namespace {

/// Of a slider in one decibel.
constexpr int kSteps = 2;
constexpr int kPageDb = 3;

QString frequencyText(float frequency) {
    const QLocale locale;
    if (frequency < 1000.0F) {
        return EqualizerPanel::tr("%1 Hz").arg(locale.toString(std::lround(frequency)));
    }
    return EqualizerPanel::tr("%1 kHz").arg(
        locale.toString(static_cast<qlonglong>(std::lround(frequency / 1000.0F))));
}

QString gainText(float gainDb) {
    const QString number = QLocale().toString(static_cast<double>(gainDb), 'f', 1);
    return gainDb > 0.0F ? QLatin1Char('+') + number : number;
}

QLabel* centred(const QString& text) {
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

} // namespace

EqualizerPanel::EqualizerPanel(QWidget* parent)
    : QWidget(parent), m_isOn(new QCheckBox(tr("&Equalizer"), this)),
      m_preset(new QComboBox(this)) {
    m_isOn->setObjectName(QStringLiteral("equalizerOn"));
    m_preset->setObjectName(QStringLiteral("equalizerPreset"));
    m_preset->setAccessibleName(tr("Preset"));
    for (const BASS::EqualizerPreset& preset : BASS::equalizerPresets()) {
        m_preset->addItem(BASS::presetName(preset));
    }
    m_preset->addItem(tr("Own"));
    auto* head = new QHBoxLayout;
    head->addWidget(m_isOn);
    head->addStretch(1);
    auto* presetLabel = new QLabel(tr("&Preset:"), this);
    presetLabel->setBuddy(m_preset);
    head->addWidget(presetLabel);
    head->addWidget(m_preset);

    auto* row = new QHBoxLayout;
    row->setSpacing(4);
    m_preamp = addBand(row, "preamp", tr("Pre-amp"));
    m_preamp.slider->setAccessibleName(tr("Pre-amplifier"));
    row->addSpacing(12);
    for (std::size_t band = 0; band < m_bands.size(); ++band) {
        const QString text = frequencyText(BASS::EffectSettings::kFrequencies[band]);
        const QByteArray name = "band" + QByteArray::number(static_cast<int>(band));
        m_bands[band] = addBand(row, name.constData(), text);
        m_bands[band].slider->setAccessibleName(text);
    }
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addLayout(head);
    all->addLayout(row, 1);
    connect(m_isOn, &QCheckBox::toggled, this, [this] { changed(m_isOn->isChecked()); });
    connect(
        m_preset, QOverload<int>::of(&QComboBox::activated), this, &EqualizerPanel::choosePreset);
}

EqualizerPanel::Band
EqualizerPanel::addBand(QHBoxLayout* row, const char* name, const QString& label) {
    constexpr int kMost = static_cast<int>(BASS::EffectSettings::kMaxBandDb) * kSteps;
    Band band{new QSlider(Qt::Vertical, this), centred({})};
    band.slider->setObjectName(QLatin1String(name));
    band.slider->setRange(-kMost, kMost);
    band.slider->setPageStep(kPageDb * kSteps);
    band.slider->setMinimumHeight(130);
    band.value->setMinimumWidth(band.value->fontMetrics().horizontalAdvance(gainText(-12.0F)) + 8);
    auto* column = new QVBoxLayout;
    column->addWidget(band.value);
    column->addWidget(band.slider, 1, Qt::AlignHCenter);
    column->addWidget(centred(label));
    row->addLayout(column, 1);
    // whoever moves a slider wants to hear it
    connect(band.slider, &QSlider::valueChanged, this, [this] { changed(true); });
    return band;
}

void EqualizerPanel::showBand(const Band& band, float gainDb) {
    band.slider->setValue(static_cast<int>(std::lround(gainDb * kSteps)));
    band.value->setText(gainText(gainDb));
    band.slider->setAccessibleDescription(tr("%1 decibels").arg(gainText(gainDb)));
}

void EqualizerPanel::showEqualizer(const BASS::EffectSettings::Equalizer& equalizer) {
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    m_isOn->setChecked(equalizer.isOn);
    showBand(m_preamp, equalizer.preampDb);
    for (std::size_t band = 0; band < m_bands.size(); ++band) {
        showBand(m_bands[band], equalizer.bandsDb[band]);
    }
    const int preset = BASS::presetOf(equalizer.bandsDb);
    m_preset->setCurrentIndex(preset >= 0 ? preset : m_preset->count() - 1);
}

BASS::EffectSettings::Equalizer EqualizerPanel::equalizer() const {
    const auto gain = [](const Band& band) {
        return static_cast<float>(band.slider->value()) / kSteps;
    };
    BASS::EffectSettings::Equalizer result;
    result.isOn = m_isOn->isChecked();
    result.preampDb = gain(m_preamp);
    for (std::size_t band = 0; band < m_bands.size(); ++band) {
        result.bandsDb[band] = gain(m_bands[band]);
    }
    return result;
}

void EqualizerPanel::changed(bool isOn) {
    if (m_isShowing) {
        return;
    }
    BASS::EffectSettings::Equalizer now = equalizer();
    now.isOn = isOn;
    showEqualizer(now);
    emit sig_changed(now);
}

void EqualizerPanel::choosePreset(int index) {
    const auto place = static_cast<std::size_t>(index);
    if (place >= BASS::equalizerPresets().size()) {
        return;
    }
    BASS::EffectSettings::Equalizer now = equalizer();
    now.isOn = true;
    now.bandsDb = BASS::equalizerPresets()[place].bandsDb;
    showEqualizer(now);
    emit sig_changed(now);
}
