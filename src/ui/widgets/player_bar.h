#pragma once

#include "engine/engine_types.h"
#include "recording/recording_types.h"

#include <QFrame>

#include <chrono>

class Commands;
class ElidedLabel;
class QBoxLayout;
class QLabel;
class QSlider;
class QToolButton;
class MenuToolButton;
class PeakMeter;
class RecordingStrip;

/// The bar at the bottom: what is heard, the transport, the volume, and the recording.
///
/// *Thread*: GUI. *Owner*: the main window. It shows what it is given and asks nobody.
class PlayerBar final : public QFrame {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PlayerBar)

  public:
    explicit PlayerBar(const Commands& commands, QWidget* parent = nullptr);

    struct Heard {
        QString station;
        QString title;
        PlayState state = PlayState::Stopped;
        StreamInfo stream;
    };
    void showHeard(const Heard& heard);
    /// A line of the engine in place of the state, until the state changes.
    void showStatusLine(const QString& text);
    void showElapsed(std::chrono::milliseconds elapsed);
    struct Recorded {
        bool isRecording = false;
        bool isPaused = false;
        BASS::RecordingProgress progress;
        bool isSplitting = true; ///< what the record button does
    };
    void showRecording(const Recorded& recorded);
    void setPauseButtonShown(bool isShown);
    void showVolume(int percent, bool isMuted);
    [[nodiscard]] PeakMeter& meter() const { return *m_meter; }

  signals:
    void sig_volumeMoved(int percent);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void makeTexts();
    void makeButtons(const Commands& commands);
    void makeVolume();
    void layOut();
    void updateStatus();
    void updateButtons();

    Heard m_heard;
    QString m_statusLine;
    QLabel* m_picture;
    ElidedLabel* m_station;
    ElidedLabel* m_title;
    ElidedLabel* m_status;
    QLabel* m_elapsed;
    QToolButton* m_play;
    QToolButton* m_pause;
    QToolButton* m_live; ///< shown while what is heard lies behind
    MenuToolButton* m_record;
    PeakMeter* m_meter;
    QToolButton* m_mute;
    QSlider* m_volume;
    QLabel* m_percent;
    RecordingStrip* m_strip;
    QBoxLayout* m_row = nullptr;
};
