#pragma once

#include "ui/meter_kind.h"

#include <QColor>
#include <QTimer>
#include <QVector>
#include <QWidget>

#include <functional>

/// How the peak meter looks.
struct PeakMeterLook {
    MeterKind kind = MeterKind::Level;
    QColor back;
    QColor top; ///< of a full bar
    QColor bottom;
};

/// Two bars with the level of both sides, or the bars of a spectrum, in decibels. It asks while it
/// is seen and something plays, at most 20 times a second, and paints only where a bar moves.
///
/// *Thread*: GUI. *Owner*: the player bar.
class PeakMeter final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PeakMeter)

  public:
    /// Peaks since the last moments: left in the low, right in the high 16 bits, 0 to 32768.
    using Level = std::function<quint32()>;
    /// Amplitudes by frequency with the step between two in Hz; 0: none. See spectrumBands().
    using Spectrum = std::function<double(QVector<float>& amplitudes)>;

    explicit PeakMeter(QWidget* parent = nullptr);

    void setSources(Level level, Spectrum spectrum);
    void setLook(const PeakMeterLook& look);
    void setRunning(bool isRunning);
    [[nodiscard]] bool isAsking() const { return m_timer.isActive(); }

    [[nodiscard]] QSize sizeHint() const override;
    /// The part of a bar that is full for a peak of 0 to 32768. Pure.
    static double fullness(quint32 peak);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void tick();
    void startOrStop();
    [[nodiscard]] QVector<double> ask();
    [[nodiscard]] int barHeight(double bar) const;

    Level m_level;
    Spectrum m_spectrum;
    QVector<float> m_amplitudes; ///< kept: filled 20 times a second
    PeakMeterLook m_look;
    QTimer m_timer;
    bool m_isRunning = false;
    bool m_isSeen = false;
    QVector<double> m_bars; ///< 0 to 1
};
