#pragma once

#include "ui/audio_devices.h"
#include "ui/preferences.h"

#include <QWidget>

class QComboBox;
class QSpinBox;

/// The page of the settings dialog that tells through what, and how patiently, stations are played.
///
/// *Thread*: GUI. *Owner*: the dialog.
class PlayingSettingsPage final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PlayingSettingsPage)

  public:
    explicit PlayingSettingsPage(AudioDevices devices, QWidget* parent = nullptr);

    void fill(const Preferences& preferences);
    /// Puts what is shown into its fields and leaves the others.
    void read(Preferences& preferences) const;

  private:
    static void fillDevices(QComboBox* box, const QStringList& devices, const QString& chosen);

    const AudioDevices m_devices;
    QComboBox* m_output;
    QComboBox* m_input;
    QSpinBox* m_fadeIn;
    QSpinBox* m_fadeOut;
    QSpinBox* m_buffer;
    QSpinBox* m_attempts;
    QSpinBox* m_patience;
    QComboBox* m_meter;
};
