#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>

/// How the peak meter looks.
struct PeakMeterLook {
    bool isShown = true;
    QColor back;
    QColor top; ///< of a full bar
    QColor bottom;
};

/// Two bars with the level of both sides, in decibels. It asks for the level while it is seen and
/// something plays, at most 20 times a second, and paints only where a bar moves.
///
/// *Thread*: GUI. *Owner*: the player bar.
class PeakMeter final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PeakMeter)

  public:
    /// Peaks since the last moments: left in the low, right in the high 16 bits, 0 to 32768.
    using Level = std::function<quint32()>;

    explicit PeakMeter(QWidget* parent = nullptr);

    void setLevel(Level level) { m_level = std::move(level); }
    void setLook(const PeakMeterLook& look);
    void setRunning(bool isRunning);
    [[nodiscard]] bool isAsking() const { return m_timer.isActive(); }

    [[nodiscard]] QSize sizeHint() const override { return {18, 44}; }
    /// The part of a bar that is full for a peak of 0 to 32768. Pure.
    static double fullness(quint32 peak);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void tick();
    void startOrStop();
    [[nodiscard]] int barHeight(std::size_t side) const;

    Level m_level;
    PeakMeterLook m_look;
    QTimer m_timer;
    bool m_isRunning = false;
    bool m_isSeen = false;
    std::array<double, 2> m_bars{}; ///< 0 to 1
};
