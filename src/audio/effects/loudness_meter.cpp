#include "audio/effects/loudness_meter.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace BASS {
namespace {

constexpr double kOffset = -0.691; // BS.1770: of the weighting at 1 kHz
constexpr double kAbsoluteGate = -70.0;
constexpr double kRelativeGate = 0.1; // -10 LU

double lufsOf(double meanSquare) {
    return kOffset + 10.0 * std::log10(meanSquare);
}

double meanSquareOf(double lufs) {
    return std::pow(10.0, (lufs - kOffset) / 10.0);
}

} // namespace

LoudnessMeter::LoudnessMeter(int rate)
    : m_quarterFrames(static_cast<std::size_t>(rate) / 10), m_blocks(kBlocks) {
    m_shelf.setNumbers(BiquadNumbers::loudnessShelf(rate));
    m_highPass.setNumbers(BiquadNumbers::loudnessHighPass(rate));
}

void LoudnessMeter::reset() {
    m_shelf.reset();
    m_highPass.reset();
    m_frames = 0;
    m_energy = 0.0;
    m_quarterCount = 0;
    m_next = 0;
    m_count = 0;
}

bool LoudnessMeter::add(const float* samples, std::size_t frames) {
    bool isNew = false;
    while (frames > 0) {
        const std::size_t part = std::min({frames, kChunkFrames, m_quarterFrames - m_frames});
        m_shelf.process(samples, m_weighted.data(), part);
        m_highPass.process(m_weighted.data(), m_weighted.data(), part);
        float energy = 0.0F;
        for (std::size_t n = 0; n < 2 * part; ++n)
            energy += m_weighted[n] * m_weighted[n];
        m_energy += static_cast<double>(energy);
        m_frames += part;
        samples += 2 * part;
        frames -= part;
        if (m_frames == m_quarterFrames) {
            endQuarter();
            isNew = true;
        }
    }
    return isNew;
}

void LoudnessMeter::endQuarter() {
    m_quarters[m_quarterCount % kQuarters] = m_energy / static_cast<double>(m_quarterFrames);
    ++m_quarterCount;
    m_energy = 0.0;
    m_frames = 0;
    if (m_quarterCount < kQuarters)
        return;
    const double block = std::accumulate(m_quarters.begin(), m_quarters.end(), 0.0) / kQuarters;
    if (!(block > meanSquareOf(kAbsoluteGate)) || std::isinf(block))
        return;
    m_blocks[m_next] = block;
    m_next = (m_next + 1) % kBlocks;
    m_count = std::min(m_count + 1, kBlocks);
}

double LoudnessMeter::lufs() const {
    if (m_count == 0)
        return kUnknown;
    const auto end = m_blocks.begin() + static_cast<std::ptrdiff_t>(m_count);
    const double gate =
        std::accumulate(m_blocks.begin(), end, 0.0) / static_cast<double>(m_count) * kRelativeGate;
    double sum = 0.0;
    std::size_t count = 0;
    for (auto block = m_blocks.begin(); block != end; ++block) {
        if (*block <= gate)
            continue;
        sum += *block;
        ++count;
    }
    return lufsOf(sum / static_cast<double>(count));
}

} // namespace BASS
