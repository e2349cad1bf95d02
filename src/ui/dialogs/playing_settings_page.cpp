#include "ui/dialogs/playing_settings_page.h"

#include "ui/dialogs/form_fields.h"

#include <QLabel>
#include <QSpinBox>

#include <utility>

namespace {

constexpr int kMostPatienceMinutes = 24 * 60;

} // namespace

PlayingSettingsPage::PlayingSettingsPage(AudioDevices devices, QWidget* parent)
    : QWidget(parent), m_devices(std::move(devices)) {
    auto* form = new QFormLayout(this);
    m_output = addField<QComboBox>(form, "outputDevice", tr("O&utput device:"));
    m_input = addField<QComboBox>(form, "recordingDevice", tr("Recording de&vice:"));
    for (QComboBox* box : {m_output, m_input}) {
        box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // names may be long
    }
    m_fadeIn = addNumber(form, "fadeIn", tr("Fade &in:"), 0, 30);
    m_fadeOut = addNumber(form, "fadeOut", tr("Fade &out:"), 0, 30);
    for (QSpinBox* box : {m_fadeIn, m_fadeOut}) {
        box->setSuffix(tr(" s", "seconds"));
    }
    m_buffer = addNumber(form, "buffer", tr("&Buffer:"), 500, 60000);
    m_buffer->setSingleStep(500);
    m_buffer->setSuffix(tr(" ms", "milliseconds"));
    m_attempts = addNumber(form, "attempts", tr("&Attempts to connect:"), 1, 20);
    m_patience =
        addNumber(form, "patience", tr("&Wait for a lost station:"), 1, kMostPatienceMinutes);
    m_patience->setSuffix(tr(" min", "minutes"));
    form->addRow(quietText(tr("A larger buffer bridges longer gaps of the network. A station that "
                              "is being recorded is waited for without a limit. Changes are in "
                              "force from the next station on.")));
    m_meter = addField<QComboBox>(form, "meter", tr("&Meter:"));
    m_meter->addItem(tr("None"), static_cast<int>(MeterKind::None));
    m_meter->addItem(tr("Level"), static_cast<int>(MeterKind::Level));
    m_meter->addItem(tr("Spectrum"), static_cast<int>(MeterKind::Spectrum));
}

/// A chosen device that is not there now stays the choice.
void PlayingSettingsPage::fillDevices(QComboBox* box,
                                      const QStringList& devices,
                                      const QString& chosen) {
    box->clear();
    box->addItem(tr("As the system"), QString());
    for (const QString& device : devices) {
        box->addItem(device, device);
    }
    if (!chosen.isEmpty() && !devices.contains(chosen)) {
        box->addItem(tr("%1 (not there now)").arg(chosen), chosen);
    }
    choose(box, chosen);
}

void PlayingSettingsPage::fill(const Preferences& preferences) {
    fillDevices(m_output, m_devices.outputs, preferences.outputDevice);
    fillDevices(m_input, m_devices.inputs, preferences.recordingDevice);
    m_fadeIn->setValue(preferences.fadeInSeconds);
    m_fadeOut->setValue(preferences.fadeOutSeconds);
    m_buffer->setValue(preferences.bufferMs);
    m_attempts->setValue(preferences.attempts);
    m_patience->setValue(preferences.patienceMinutes);
    choose(m_meter, static_cast<int>(preferences.meter));
}

void PlayingSettingsPage::read(Preferences& preferences) const {
    preferences.outputDevice = m_output->currentData().toString();
    preferences.recordingDevice = m_input->currentData().toString();
    preferences.fadeInSeconds = m_fadeIn->value();
    preferences.fadeOutSeconds = m_fadeOut->value();
    preferences.bufferMs = m_buffer->value();
    preferences.attempts = m_attempts->value();
    preferences.patienceMinutes = m_patience->value();
    preferences.meter = static_cast<MeterKind>(m_meter->currentData().toInt());
}
