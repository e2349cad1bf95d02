#pragma once

#include "ui/recording_preferences.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QVBoxLayout;

/// The page of the settings dialog that tells what recordings are encoded to, and what is written
/// into and beside the files.
///
/// *Thread*: GUI. *Owner*: the dialog.
class EncodingSettingsPage final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(EncodingSettingsPage)

  public:
    explicit EncodingSettingsPage(QWidget* parent = nullptr);

    void fill(const RecordingPreferences& preferences);
    /// Puts what is shown into its fields and leaves the others.
    void read(RecordingPreferences& preferences) const;

  private:
    void addEncoder(QFormLayout* form);
    void addLists(QVBoxLayout* layout);
    void encoderChosen();
    void keepArguments();

    QComboBox* m_encoder = nullptr;
    QComboBox* m_bitrate = nullptr;
    QComboBox* m_mode = nullptr;
    QLineEdit* m_arguments = nullptr;
    QCheckBox* m_same = nullptr;
    QCheckBox* m_remove = nullptr;
    QCheckBox* m_tags = nullptr;
    QCheckBox* m_list = nullptr;
    QComboBox* m_format = nullptr;
    QCheckBox* m_dated = nullptr;
    QCheckBox* m_titles = nullptr;
    QMap<int, QString> m_ownArguments; ///< of every code that has them
    int m_shown = 0;                   ///< the code whose arguments are shown
};
