#include "audio/effects/equalizer.h"

#include "audio/effects/decibel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace BASS {
namespace {

constexpr std::size_t kBands = EffectSettings::kBands;
constexpr std::size_t kStepFrames = 8;
constexpr double kStepDb = 1.0 / 16.0; // 12 dB in 35 ms
/// Neighbours with opposite gains need more of each other; beyond this they stay short of it.
constexpr double kMaxFilterDb = 24.0;

using Gains = std::array<double, kBands>;
using Matrix = std::array<Gains, kBands>;

/// The matrix is diagonally dominant: no pivot is needed.
Gains solve(Matrix matrix, Gains right) {
    for (std::size_t column = 0; column < kBands; ++column)
        for (std::size_t row = column + 1; row < kBands; ++row) {
            const double factor = matrix[row][column] / matrix[column][column];
            for (std::size_t n = column; n < kBands; ++n)
                matrix[row][n] -= factor * matrix[column][n];
            right[row] -= factor * right[column];
        }
    for (std::size_t row = kBands; row-- > 0;) {
        for (std::size_t n = row + 1; n < kBands; ++n)
            right[row] -= matrix[row][n] * right[n];
        right[row] /= matrix[row][row];
    }
    return right;
}

bool isPossible(std::size_t band, int rate) {
    constexpr double kHighest = 0.45; // of the rate
    return static_cast<double>(EffectSettings::kFrequencies[band]) < kHighest * rate;
}

double responseDb(std::size_t filter, double gainDb, std::size_t at, int rate) {
    const double frequency = static_cast<double>(EffectSettings::kFrequencies[at]);
    return BiquadNumbers::peak(
               static_cast<double>(EffectSettings::kFrequencies[filter]), gainDb, rate)
        .responseDb(frequency, rate);
}

} // namespace

Equalizer::Equalizer(int rate) : m_rate(rate), m_preamp(1.0, rate) {}

void Equalizer::set(const EffectSettings::Equalizer& settings, Transition transition) {
    m_preamp.setTarget(settings.isOn ? fromDecibel(static_cast<double>(settings.preampDb)) : 1.0,
                       transition);
    m_targets = settings.isOn ? bandGains(settings.bandsDb) : Gains{};
    while (transition == Transition::AtOnce && moveBands()) {
    }
}

/// Filters an octave apart overlap: each gets the gain with which the sum of all is what is wanted
/// at every band's frequency. Decibels add up almost linearly, so a few corrections are enough.
Equalizer::Gains Equalizer::bandGains(const std::array<float, kBands>& wanted) const {
    constexpr double kProbeDb = 6.0;
    constexpr int kCorrections = 4;
    Matrix overlap{};
    for (std::size_t at = 0; at < kBands; ++at)
        for (std::size_t filter = 0; filter < kBands; ++filter) {
            const bool isUsed = isPossible(at, m_rate) && isPossible(filter, m_rate);
            overlap[at][filter] = isUsed ? responseDb(filter, kProbeDb, at, m_rate) / kProbeDb
                                         : (at == filter ? 1.0 : 0.0);
        }
    Gains result{};
    for (int n = 0; n < kCorrections; ++n) {
        Gains missing{};
        for (std::size_t at = 0; at < kBands; ++at) {
            if (!isPossible(at, m_rate))
                continue;
            missing[at] = static_cast<double>(wanted[at]);
            for (std::size_t filter = 0; filter < kBands; ++filter)
                missing[at] -= responseDb(filter, result[filter], at, m_rate);
        }
        const Gains more = solve(overlap, missing);
        for (std::size_t band = 0; band < kBands; ++band)
            result[band] = std::clamp(result[band] + more[band], -kMaxFilterDb, kMaxFilterDb);
    }
    return result;
}

/// A band that is set back to nothing still rings for a moment.
bool Equalizer::isBandActive(std::size_t band) const {
    return m_gains[band] != 0.0 || m_targets[band] != 0.0 || !m_filters[band].isAtRest();
}

bool Equalizer::isActive() const {
    if (!m_preamp.isSteady() || m_preamp.value() != 1.0)
        return true;
    for (std::size_t band = 0; band < kBands; ++band)
        if (isBandActive(band))
            return true;
    return false;
}

void Equalizer::process(float* samples, std::size_t frames) {
    amplify(samples, frames);
    while (frames > 0) {
        const bool isMoving = moveBands();
        const std::size_t part = isMoving ? std::min(frames, kStepFrames) : frames;
        filter(samples, part);
        samples += 2 * part;
        frames -= part;
    }
}

/// True while a band is on its way.
bool Equalizer::moveBands() {
    bool isMoving = false;
    for (std::size_t band = 0; band < kBands; ++band) {
        if (m_gains[band] == m_targets[band])
            continue;
        isMoving = true;
        const double left = m_targets[band] - m_gains[band];
        m_gains[band] = std::abs(left) <= kStepDb ? m_targets[band]
                                                  : m_gains[band] + std::copysign(kStepDb, left);
        m_filters[band].setNumbers(BiquadNumbers::peak(
            static_cast<double>(EffectSettings::kFrequencies[band]), m_gains[band], m_rate));
    }
    return isMoving;
}

void Equalizer::amplify(float* samples, std::size_t frames) {
    if (m_preamp.isSteady() && m_preamp.value() == 1.0)
        return;
    const bool isSteady = m_preamp.isSteady();
    double gain = m_preamp.value();
    for (std::size_t n = 0; n < frames; ++n) {
        if (!isSteady)
            gain = m_preamp.next();
        samples[2 * n] *= static_cast<float>(gain);
        samples[2 * n + 1] *= static_cast<float>(gain);
    }
}

void Equalizer::filter(float* samples, std::size_t frames) {
    for (std::size_t band = 0; band < kBands; ++band) {
        if (isBandActive(band))
            m_filters[band].process(samples, samples, frames);
        else
            m_filters[band].pass(samples, frames);
    }
}

} // namespace BASS
