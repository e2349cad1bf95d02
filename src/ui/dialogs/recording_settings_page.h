#pragma once

#include "ui/recording_preferences.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QSpinBox;
class QVBoxLayout;

/// The page of the settings dialog that tells where, under which names and in which pieces
/// recordings are written.
///
/// *Thread*: GUI. *Owner*: the dialog.
class RecordingSettingsPage final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingSettingsPage)

  public:
    explicit RecordingSettingsPage(QWidget* parent = nullptr);

    void fill(const RecordingPreferences& preferences);
    /// Puts what is shown into its fields and leaves the others.
    void read(RecordingPreferences& preferences) const;

  signals:
    /// Something that none of the fields shows.
    void sig_changed();

  private:
    /// A pattern's field; the formats are only shown by its editor.
    struct NameFields {
        QLineEdit* pattern = nullptr;
        RecordingPreferences::Names names;
    };

    void addFolder(QFormLayout* form);
    void addNames(QFormLayout* form, NameFields& fields, bool isSplit);
    void addPieces(QFormLayout* form);
    void addChecks(QVBoxLayout* layout);
    void addBuffer(QVBoxLayout* layout);
    void editNames(NameFields& fields, bool isSplit);
    void browse();

    QLineEdit* m_folder = nullptr;
    NameFields m_split;
    NameFields m_noSplit;
    QComboBox* m_mode = nullptr;
    QSpinBox* m_minutes = nullptr;
    QSpinBox* m_delay = nullptr;
    QCheckBox* m_overwrite = nullptr;
    QCheckBox* m_byteExact = nullptr;
    QCheckBox* m_m4a = nullptr;
    QCheckBox* m_pause = nullptr;
    QCheckBox* m_noBuffer = nullptr;
    QSpinBox* m_bufferSize = nullptr;
};
