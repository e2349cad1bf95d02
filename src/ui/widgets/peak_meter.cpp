#include "ui/widgets/peak_meter.h"

#include "ui/widgets/spectrum_bands.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kIntervalMs = 50;
constexpr double kRangeDb = 48.0;
/// What a bar falls between two looks: 24 decibels a second.
constexpr double kFall = 24.0 / kRangeDb * kIntervalMs / 1000.0;
constexpr int kSides = 2;
constexpr int kSideWidth = 8;
constexpr int kSideGap = 2;
constexpr int kBandWidth = 4;
constexpr int kBandGap = 1;
constexpr int kHeight = 44;

} // namespace

PeakMeter::PeakMeter(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("peakMeter"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_timer.setInterval(kIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &PeakMeter::tick);
    setLook({});
}

void PeakMeter::setLook(const PeakMeterLook& look) {
    const bool isSpectrum = look.kind == MeterKind::Spectrum;
    m_look = look;
    m_bars.fill(0.0, isSpectrum ? kSpectrumBands : kSides);
    setAccessibleName(isSpectrum ? tr("Spectrum") : tr("Level"));
    setVisible(look.kind != MeterKind::None);
    updateGeometry();
    update();
}

void PeakMeter::setSources(Level level, Spectrum spectrum) {
    m_level = std::move(level);
    m_spectrum = std::move(spectrum);
    startOrStop();
}

void PeakMeter::setRunning(bool isRunning) {
    m_isRunning = isRunning;
    startOrStop();
}

void PeakMeter::startOrStop() {
    const bool isNeeded = m_isRunning && m_isSeen && m_level != nullptr && m_spectrum != nullptr;
    if (isNeeded == m_timer.isActive()) {
        return;
    }
    if (isNeeded) {
        m_timer.start();
        return;
    }
    m_timer.stop();
    m_bars.fill(0.0);
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

int PeakMeter::barHeight(double bar) const {
    return static_cast<int>(std::lround(bar * height()));
}

QSize PeakMeter::sizeHint() const {
    const int bars = m_bars.size();
    return m_look.kind == MeterKind::Spectrum
               ? QSize(bars * kBandWidth + (bars - 1) * kBandGap, kHeight)
               : QSize(kSides * kSideWidth + kSideGap, kHeight);
}

QVector<double> PeakMeter::ask() {
    if (m_look.kind == MeterKind::Spectrum) {
        const double stepHz = m_spectrum(m_amplitudes);
        return spectrumBands(m_amplitudes, stepHz);
    }
    const quint32 level = m_level();
    return {fullness(level & 0xFFFFU), fullness(level >> 16)};
}

void PeakMeter::tick() {
    const QVector<double> now = ask();
    bool isMoved = false;
    for (int n = 0; n < m_bars.size(); ++n) {
        const double before = m_bars[n];
        m_bars[n] = std::max(now[n], before - kFall);
        isMoved = isMoved || barHeight(m_bars[n]) != barHeight(before);
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
    const bool isSpectrum = m_look.kind == MeterKind::Spectrum;
    const int barWidth = isSpectrum ? kBandWidth : kSideWidth;
    const int gap = isSpectrum ? kBandGap : kSideGap;
    int left = 0;
    for (const double bar : qAsConst(m_bars)) {
        const int full = barHeight(bar);
        painter.fillRect(left, 0, barWidth, height() - full, m_look.back);
        painter.fillRect(left, height() - full, barWidth, full, gradient);
        left += barWidth + gap;
    }
}
