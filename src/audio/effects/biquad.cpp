#include "audio/effects/biquad.h"

#include <cmath>
#include <complex>

namespace BASS {
namespace {

constexpr double kPi = 3.14159265358979323846;
/// Numbers smaller than this are slow to calculate with, and silence; larger ones are damage.
constexpr double kNothing = 1e-18;
constexpr double kMost = 1e6;

BiquadNumbers normalised(const BiquadNumbers& numbers, double a0) {
    return {numbers.b0 / a0, numbers.b1 / a0, numbers.b2 / a0, numbers.a1 / a0, numbers.a2 / a0};
}

} // namespace

BiquadNumbers BiquadNumbers::peak(double frequency, double gainDb, int rate) {
    constexpr double kOctaveQ = 1.41421356;
    const double a = std::pow(10.0, gainDb / 40.0);
    const double omega = 2.0 * kPi * frequency / rate;
    const double alpha = std::sin(omega) / (2.0 * kOctaveQ);
    const double cosine = -2.0 * std::cos(omega);
    return normalised({1.0 + alpha * a, cosine, 1.0 - alpha * a, cosine, 1.0 - alpha / a},
                      1.0 + alpha / a);
}

// BS.1770 lists both stages for 48 kHz only; these are the analogue filters behind its numbers.
BiquadNumbers BiquadNumbers::loudnessShelf(int rate) {
    constexpr double kFrequency = 1681.974450955533;
    constexpr double kGainDb = 3.999843853973347;
    constexpr double kQ = 0.7071752369554196;
    const double k = std::tan(kPi * kFrequency / rate);
    const double high = std::pow(10.0, kGainDb / 20.0);
    const double band = std::pow(high, 0.4996667741545416);
    return normalised({high + band * k / kQ + k * k,
                       2.0 * (k * k - high),
                       high - band * k / kQ + k * k,
                       2.0 * (k * k - 1.0),
                       1.0 - k / kQ + k * k},
                      1.0 + k / kQ + k * k);
}

BiquadNumbers BiquadNumbers::loudnessHighPass(int rate) {
    constexpr double kFrequency = 38.13547087602444;
    constexpr double kQ = 0.5003270373238773;
    const double k = std::tan(kPi * kFrequency / rate);
    const double a0 = 1.0 + k / kQ + k * k;
    return {1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / kQ + k * k) / a0};
}

double BiquadNumbers::responseDb(double frequency, int rate) const {
    const double omega = 2.0 * kPi * frequency / rate;
    const std::complex<double> z = std::polar(1.0, -omega);
    const std::complex<double> gain = (b0 + z * (b1 + z * b2)) / (1.0 + z * (a1 + z * a2));
    return 20.0 * std::log10(std::abs(gain));
}

bool StereoBiquad::Side::isAtRest() const {
    constexpr double kInaudible = 1e-8;
    return std::abs(in1 - out1) < kInaudible && std::abs(in2 - out2) < kInaudible;
}

void StereoBiquad::Side::clean() {
    for (double* value : {&in1, &in2, &out1, &out2})
        if (!(std::abs(*value) >= kNothing && std::abs(*value) <= kMost))
            *value = 0.0;
}

void StereoBiquad::process(const float* in, float* out, std::size_t frames) {
    const BiquadNumbers n = m_numbers;
    Side left = m_left;
    Side right = m_right;
    const auto next = [&n](Side& side, float sample) {
        const auto value = static_cast<double>(sample);
        const double result = n.b0 * value +
                              (n.b1 * side.in1 + n.b2 * side.in2 - n.a2 * side.out2) -
                              n.a1 * side.out1;
        side = {value, side.in1, result, side.out1};
        return static_cast<float>(result);
    };
    for (std::size_t at = 0; at < 2 * frames; at += 2) {
        out[at] = next(left, in[at]);
        out[at + 1] = next(right, in[at + 1]);
    }
    m_left = left;
    m_right = right;
    m_left.clean();
    m_right.clean();
}

void StereoBiquad::pass(const float* samples, std::size_t frames) {
    for (std::size_t n = frames < 2 ? 0 : frames - 2; n < frames; ++n) {
        const auto left = static_cast<double>(samples[2 * n]);
        const auto right = static_cast<double>(samples[2 * n + 1]);
        m_left = {left, m_left.in1, left, m_left.in1};
        m_right = {right, m_right.in1, right, m_right.in1};
    }
}

} // namespace BASS
