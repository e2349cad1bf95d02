#include "ui/widgets/spectrum_bands.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLowestHz = 50.0;
constexpr double kHighestHz = 16000.0;
constexpr double kRangeDb = 66.0;
constexpr double kTiltDb = 3.0;         ///< an octave
constexpr double kTiltCentreHz = 250.0; ///< raised above, lowered below

double edgeHz(int band) {
    return kLowestHz * std::pow(kHighestHz / kLowestHz, static_cast<double>(band) / kSpectrumBands);
}

double fullness(float amplitude, double frequencyHz) {
    if (amplitude <= 0.0F) {
        return 0.0;
    }
    const double decibel = 20.0 * std::log10(static_cast<double>(amplitude)) +
                           kTiltDb * std::log2(frequencyHz / kTiltCentreHz);
    return std::clamp(1.0 + decibel / kRangeDb, 0.0, 1.0);
}

} // namespace

QVector<double> spectrumBands(const QVector<float>& amplitudes, double stepHz) {
    QVector<double> bands(kSpectrumBands, 0.0);
    if (stepHz <= 0.0) {
        return bands;
    }
    for (int band = 0; band < kSpectrumBands; ++band) {
        // Low bars are narrower than a step: they show the nearest frequency.
        const int first = qRound(edgeHz(band) / stepHz);
        const int end = std::max(first + 1, qRound(edgeHz(band + 1) / stepHz));
        float loudest = 0.0F;
        for (int n = first; n < std::min(end, amplitudes.size()); ++n) {
            loudest = std::max(loudest, amplitudes[n]);
        }
        bands[band] = fullness(loudest, std::sqrt(edgeHz(band) * edgeHz(band + 1)));
    }
    return bands;
}
