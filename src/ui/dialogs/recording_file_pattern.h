#pragma once

#include "recording/file_pattern.h"
#include "ui/recording_preferences.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

/// Edits how recordings are called: a pattern of placeholders, the formats of date and time, and a
/// name made of them at every keystroke.
///
/// *Thread*: GUI. *Owner*: who opens it. *Life*: one opening.
class RecordingFilePattern final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingFilePattern)

  public:
    struct Choice {
        RecordingPreferences::Names names;
        bool isSplit = true;
        /// What "Copy from settings" takes; empty: there is nothing else in force.
        RecordingPreferences::Names settings;
    };

    explicit RecordingFilePattern(const Choice& choice, QWidget* parent = nullptr);

    /// As the dialog shows them now.
    [[nodiscard]] RecordingPreferences::Names names() const;

    /// A name that is made as a recording's, for a station and a title that stand as an example;
    /// native separators.
    static QString example(const RecordingPreferences::Names& names, bool isSplit);

  private:
    QWidget* makePlaceholders();
    QWidget* makePattern();
    void insertPlaceholder();
    void fill(const RecordingPreferences::Names& names);
    void showExample();

    const Choice m_choice;
    QLineEdit* m_pattern;
    QListWidget* m_placeholders;
    QComboBox* m_presets;
    QComboBox* m_date;
    QComboBox* m_time;
    QLabel* m_output;
    QPushButton* m_ok = nullptr;
};
