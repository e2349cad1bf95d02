#pragma once

#include "recording/recording_types.h"

#include <QWidget>

class ElidedLabel;
class QAction;
class QLabel;
class QToolButton;

/// Shown while recording: the file, its time and size, the number of tracks, and the folder.
class RecordingStrip final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingStrip)

  public:
    struct Actions {
        QAction* openFolder;
        QAction* pause;
    };

    explicit RecordingStrip(const Actions& actions, QWidget* parent = nullptr);

    void showProgress(const BASS::RecordingProgress& progress, bool isPaused);
    void setPauseButtonShown(bool isShown);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void updateDot();
    static void setUpButton(QToolButton* button, QAction* action, const char* name);

    QLabel* m_dot;
    ElidedLabel* m_file;
    ElidedLabel* m_numbers;
    QToolButton* m_folder;
    QToolButton* m_pause;
};
