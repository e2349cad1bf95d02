#include "ui/dialogs/sound_dialog.h"

#include "ui/controllers/sound_controller.h"
#include "ui/widgets/equalizer_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSlider>
#include <QSpinBox>

namespace {

QCheckBox* check(const char* name, const QString& text) {
    auto* box = new QCheckBox(text);
    box->setObjectName(QLatin1String(name));
    return box;
}

} // namespace

SoundDialog::SoundDialog(SoundController& controller, QWidget* parent)
    : QDialog(parent), m_controller(controller), m_equalizer(new EqualizerPanel(this)),
      m_ofStation(check("equalizerOfStation", tr("&Only for this station"))) {
    setWindowTitle(tr("Equalizer and sound"));
    setObjectName(QStringLiteral("soundDialog"));
    auto* parts = new QHBoxLayout;
    parts->addWidget(makeLoudness(), 1);
    parts->addWidget(makeStereo(), 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* reset = buttons->addButton(tr("&Reset"), QDialogButtonBox::ResetRole);
    reset->setObjectName(QStringLiteral("soundReset"));
    reset->setAutoDefault(false);
    connect(reset, &QPushButton::clicked, this, [this] {
        BASS::SoundOptions options;
        options.isEqualizerOfStation = m_controller.options().isEqualizerOfStation;
        m_controller.setOptions(options);
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* all = new QVBoxLayout(this);
    all->addWidget(m_equalizer, 1);
    all->addWidget(m_ofStation);
    all->addLayout(parts);
    all->addWidget(buttons);
    showOptions();
    wire();
}

QSpinBox* SoundDialog::addNumber(QFormLayout* form, const char* name, const QString& label) {
    auto* box = new QSpinBox;
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(QString(label).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    form->addRow(label, box);
    return box;
}

QWidget* SoundDialog::makeLoudness() {
    auto* group = new QGroupBox(tr("Loudness"), this);
    auto* form = new QFormLayout(group);
    m_autoVolume = check("autoVolume", tr("&All stations equally loud"));
    m_compressor = check("compressor", tr("E&ven out loud and quiet"));
    form->addRow(m_autoVolume);
    form->addRow(m_compressor);
    m_boost = new QComboBox;
    m_boost->setObjectName(QStringLiteral("boost"));
    m_boost->setAccessibleName(tr("Dynamic boost"));
    m_boost->addItems({tr("Off"), tr("Low"), tr("Medium"), tr("High"), tr("Custom")});
    form->addRow(tr("&Dynamic boost:"), m_boost);
    m_threshold = addNumber(form, "boostThreshold", tr("Held back a&bove:"));
    m_threshold->setRange(-60, 0);
    m_threshold->setSuffix(tr(" dB"));
    m_ratio = addNumber(form, "boostRatio", tr("&How strongly:"));
    m_ratio->setRange(1, 20);
    m_ratio->setSuffix(tr(" to 1"));
    m_gain = addNumber(form, "boostGain", tr("Made &louder by:"));
    m_gain->setRange(0, 24);
    m_gain->setSuffix(tr(" dB"));
    return group;
}

QWidget* SoundDialog::makeStereo() {
    auto* group = new QGroupBox(tr("Stereo"), this);
    auto* layout = new QVBoxLayout(group);
    auto* label = new QLabel(tr("Stereo &width:"));
    m_separation = new QSlider(Qt::Horizontal);
    m_separation->setObjectName(QStringLiteral("stereoSeparation"));
    m_separation->setAccessibleName(tr("Stereo width"));
    m_separation->setRange(-100, 100);
    m_separation->setPageStep(10);
    m_separationText = new QLabel;
    label->setBuddy(m_separation);
    auto* head = new QHBoxLayout;
    head->addWidget(label);
    head->addStretch(1);
    head->addWidget(m_separationText);
    m_mono = check("mono", tr("&Mono"));
    m_swap = check("swapChannels", tr("&Swap left and right"));
    layout->addLayout(head);
    layout->addWidget(m_separation);
    layout->addWidget(m_mono);
    layout->addWidget(m_swap);
    layout->addStretch(1);
    return group;
}

void SoundDialog::wire() {
    connect(&m_controller, &SoundController::sig_changed, this, &SoundDialog::showOptions);
    connect(m_equalizer, &EqualizerPanel::sig_changed, this, [this](const auto& equalizer) {
        BASS::SoundOptions options = m_controller.options();
        options.equalizer = equalizer;
        m_controller.setOptions(options);
    });
    connect(
        m_ofStation, &QCheckBox::clicked, &m_controller, &SoundController::setEqualizerOfStation);
    for (QCheckBox* box : {m_autoVolume, m_compressor, m_mono, m_swap}) {
        connect(box, &QCheckBox::toggled, this, &SoundDialog::change);
    }
    connect(
        m_boost, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { change(); });
    for (QSpinBox* box : {m_threshold, m_ratio, m_gain}) {
        connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this, &SoundDialog::change);
    }
    connect(m_separation, &QSlider::valueChanged, this, &SoundDialog::change);
}

void SoundDialog::showOptions() {
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    const BASS::SoundOptions& options = m_controller.options();
    m_equalizer->showEqualizer(options.equalizer);
    m_ofStation->setEnabled(m_controller.hasStation());
    m_ofStation->setChecked(options.isEqualizerOfStation);
    m_autoVolume->setChecked(options.isAutoVolume);
    m_compressor->setChecked(options.isCompressorOn);
    m_boost->setCurrentIndex(static_cast<int>(options.boost));
    const bool isCustom = options.boost == BASS::DynamicBoost::Custom;
    const bool isOn = options.boost != BASS::DynamicBoost::Off;
    const auto numbers =
        isCustom || !isOn ? options.customBoost : BASS::compressorFor(options.boost);
    m_threshold->setValue(qRound(numbers.thresholdDb));
    m_ratio->setValue(qRound(numbers.ratio));
    m_gain->setValue(qRound(numbers.makeUpDb));
    for (QSpinBox* box : {m_threshold, m_ratio, m_gain}) {
        box->setEnabled(isCustom);
    }
    m_compressor->setEnabled(!isOn);
    m_separation->setValue(options.stereoSeparation);
    m_separationText->setText(tr("%1 %").arg(100 + options.stereoSeparation));
    m_separation->setAccessibleDescription(m_separationText->text());
    m_separation->setEnabled(!options.isMono);
    m_mono->setChecked(options.isMono);
    m_swap->setChecked(options.isSwapped);
}

void SoundDialog::change() {
    if (m_isShowing) {
        return;
    }
    BASS::SoundOptions options = m_controller.options();
    const bool wasCustom = options.boost == BASS::DynamicBoost::Custom;
    options.isAutoVolume = m_autoVolume->isChecked();
    options.isCompressorOn = m_compressor->isChecked();
    options.boost = BASS::dynamicBoostOf(m_boost->currentIndex());
    if (wasCustom) {
        options.customBoost = {true,
                               static_cast<float>(m_threshold->value()),
                               static_cast<float>(m_ratio->value()),
                               static_cast<float>(m_gain->value())};
    }
    options.isMono = m_mono->isChecked();
    options.isSwapped = m_swap->isChecked();
    options.stereoSeparation = m_separation->value();
    m_controller.setOptions(options);
}
