#include "ui/widgets/peak_meter.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kIntervalMs = 50;
constexpr double kRangeDb = 48.0;
/// What a bar falls between two looks: 24 decibels a second.
constexpr double kFall = 24.0 / kRangeDb * kIntervalMs / 1000.0;
constexpr int kGap = 2;

} // namespace

PeakMeter::PeakMeter(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("peakMeter"));
    setAccessibleName(tr("Level"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_timer.setInterval(kIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &PeakMeter::tick);
}

void PeakMeter::setLook(const PeakMeterLook& look) {
    m_look = look;
    setVisible(look.isShown);
    update();
}

void PeakMeter::setRunning(bool isRunning) {
    m_isRunning = isRunning;
    startOrStop();
}

void PeakMeter::startOrStop() {
    const bool isNeeded = m_isRunning && m_isSeen && m_level != nullptr;
    if (isNeeded == m_timer.isActive()) {
        return;
    }
    if (isNeeded) {
        m_timer.start();
        return;
    }
    m_timer.stop();
    m_bars = {};
    update();
}

double PeakMeter::fullness(quint32 peak) {
    constexpr double kFullScale = 32768.0;
    if (peak == 0) {
        return 0.0;
    }
    const double decibel = 20.0 * std::log10(peak / kFullScale);
    return std::clamp(1.0 + decibel / kRangeDb, 0.0, 1.0);
}

int PeakMeter::barHeight(std::size_t side) const {
    return static_cast<int>(std::lround(m_bars[side] * height()));
}

void PeakMeter::tick() {
    const quint32 level = m_level();
    const std::array<quint32, 2> peaks{level & 0xFFFFU, level >> 16};
    bool isMoved = false;
    for (std::size_t side = 0; side < m_bars.size(); ++side) {
        const int before = barHeight(side);
        m_bars[side] = std::max(fullness(peaks[side]), m_bars[side] - kFall);
        isMoved = isMoved || barHeight(side) != before;
    }
    if (isMoved) {
        update();
    }
}

void PeakMeter::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_isSeen = true;
    startOrStop();
}

// comes also when the window is minimised
void PeakMeter::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_isSeen = false;
    startOrStop();
}

void PeakMeter::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, m_look.top);
    gradient.setColorAt(1, m_look.bottom);
    const int barWidth = (width() - kGap) / 2;
    for (std::size_t side = 0; side < m_bars.size(); ++side) {
        const int left = side == 0 ? 0 : barWidth + kGap;
        painter.fillRect(left, 0, barWidth, height(), m_look.back);
        const int full = barHeight(side);
        painter.fillRect(left, height() - full, barWidth, full, gradient);
    }
}
