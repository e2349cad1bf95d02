#pragma once

#include "app/language_manager.h"
#include "ui/audio_devices.h"
#include "ui/preferences.h"

#include <QDialog>
#include <QVector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTabWidget;
class EncodingSettingsPage;
class PlayingSettingsPage;
class RecordingSettingsPage;

/// Shows the preferences and gives back what was changed. It stores nothing itself.
///
/// *Thread*: GUI. *Owner*: the window. *Life*: one opening.
class SettingsDialog final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SettingsDialog)

  public:
    SettingsDialog(const Preferences& preferences,
                   const QVector<Language>& languages,
                   const AudioDevices& devices,
                   QWidget* parent = nullptr);

    /// As the dialog shows them now.
    [[nodiscard]] Preferences preferences() const;

    void accept() override;

  signals:
    /// OK or "Apply", without fault; `before` is what was in force when it was shown.
    void sig_applied(const Preferences& before, const Preferences& after);

  private:
    QWidget* makeGeneral(const QVector<Language>& languages);
    QWidget* makeTray();
    QWidget* makeNetwork();
    void fill(const Preferences& preferences);
    void fillProxy(const ProxySettings& proxy);
    void watchChanges();
    void enableParts();
    bool apply();

    Preferences m_applied; ///< as the fields show it
    QTabWidget* m_tabs;
    PlayingSettingsPage* m_playing;
    RecordingSettingsPage* m_recording;
    EncodingSettingsPage* m_encoding;
    QComboBox* m_language = nullptr;
    QComboBox* m_theme = nullptr;
    QCheckBox* m_autoPlay = nullptr;
    QCheckBox* m_ask = nullptr;
    QCheckBox* m_instances = nullptr;
    QCheckBox* m_logFile = nullptr;
    QCheckBox* m_tray = nullptr;
    QCheckBox* m_persistent = nullptr;
    QCheckBox* m_onClose = nullptr;
    QCheckBox* m_onMinimize = nullptr;
    QCheckBox* m_atStart = nullptr;
    QCheckBox* m_clickMutes = nullptr;
    QCheckBox* m_toolTip = nullptr;
    QCheckBox* m_popups = nullptr;
    QCheckBox* m_useProxy = nullptr;
    QLineEdit* m_proxyHost = nullptr;
    QSpinBox* m_proxyPort = nullptr;
    QLineEdit* m_proxyUser = nullptr;
    QLineEdit* m_proxyPassword = nullptr;
    QLabel* m_note;
    QPushButton* m_apply = nullptr;
};
