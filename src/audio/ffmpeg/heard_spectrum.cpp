#include "audio/ffmpeg/heard_spectrum.h"

#include <cmath>

extern "C" {
#include <libavutil/tx.h>
}

namespace BASS {
namespace {

/// Gathered after a question; about a second at the usual rates.
constexpr int kFramesAfterQuestion = 48000;
constexpr double kPi = 3.14159265358979323846;

/// Hann's window, scaled so that a sine's bin shows its amplitude.
const std::array<float, HeardSpectrum::kFrames>& window() {
    static const auto values = [] {
        std::array<float, HeardSpectrum::kFrames> made{};
        constexpr auto kCount = static_cast<double>(HeardSpectrum::kFrames);
        for (std::size_t n = 0; n < made.size(); ++n) {
            const double hann = 0.5 - 0.5 * std::cos(2.0 * kPi * static_cast<double>(n) / kCount);
            made[n] = static_cast<float>(hann * 4.0 / kCount);
        }
        return made;
    }();
    return values;
}

} // namespace

void HeardSpectrum::FreeTransform::operator()(AVTXContext* context) const {
    av_tx_uninit(&context);
}

bool HeardSpectrum::makeTransform() {
    if (m_transform)
        return true;
    AVTXContext* context = nullptr;
    const float scale = 1.0F;
    if (av_tx_init(&context,
                   &m_function,
                   AV_TX_FLOAT_RDFT,
                   0,
                   static_cast<int>(kFrames),
                   &scale,
                   AV_TX_UNALIGNED) < 0)
        return false;
    m_transform.reset(context);
    return true;
}

void HeardSpectrum::take(const float* samples, std::size_t count) {
    std::uint64_t at = m_taken.load(std::memory_order_relaxed);
    for (std::size_t n = 0; n + 1 < count; n += 2, ++at)
        m_samples[at % kFrames].store((samples[n] + samples[n + 1]) / 2.0F,
                                      std::memory_order_relaxed);
    m_taken.store(at, std::memory_order_release);
    m_framesWanted.fetch_sub(static_cast<int>(count / 2), std::memory_order_relaxed);
}

bool HeardSpectrum::magnitudes(float* bins) {
    const std::lock_guard lock(m_mutex);
    const std::uint64_t taken = m_taken.load(std::memory_order_acquire);
    if (m_framesWanted.exchange(kFramesAfterQuestion) <= 0)
        m_firstTaken = taken; // what lies there is old
    if (taken - m_firstTaken < kFrames || !makeTransform())
        return false;
    std::array<float, kFrames> in{};
    std::array<float, kFrames + 2> out{}; // complex, the last bin included
    for (std::size_t n = 0; n < kFrames; ++n)
        in[n] = m_samples[(taken + n) % kFrames].load(std::memory_order_relaxed) * window()[n];
    m_function(m_transform.get(), out.data(), in.data(), sizeof(float));
    for (std::size_t bin = 0; bin < kBins; ++bin)
        bins[bin] = std::hypot(out[2 * bin], out[2 * bin + 1]);
    return true;
}

} // namespace BASS
