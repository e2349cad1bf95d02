#pragma once

#include "audio/effects/biquad.h"

#include <array>
#include <cstddef>
#include <vector>

namespace BASS {

/// Integrated loudness of what was heard in the last minute: ITU-R BS.1770-4 (K-weighting, blocks
/// of 400 ms every 100 ms, absolute gate at -70 LUFS, relative gate 10 LU below), as EBU R 128 asks
/// for it. Any one thread; allocates when it is made only.
class LoudnessMeter {
  public:
    explicit LoudnessMeter(int rate);

    /// Stereo frames. True where a further block is complete: lufs() may have changed.
    bool add(const float* samples, std::size_t frames);
    /// kUnknown until something above the gate was heard.
    [[nodiscard]] double lufs() const;
    /// Blocks above the absolute gate, at most kBlocks.
    [[nodiscard]] std::size_t knownBlocks() const { return m_count; }
    void reset();

    static constexpr double kUnknown = -200.0;
    static constexpr std::size_t kBlocks = 600; ///< one minute

  private:
    static constexpr std::size_t kQuarters = 4;
    static constexpr std::size_t kChunkFrames = 256;
    void endQuarter();

    StereoBiquad m_shelf;
    StereoBiquad m_highPass;
    const std::size_t m_quarterFrames; ///< 100 ms
    std::size_t m_frames = 0;          ///< in the current quarter
    double m_energy = 0.0;
    std::array<double, kQuarters> m_quarters{};
    std::size_t m_quarterCount = 0;
    std::vector<double> m_blocks; ///< mean squares, a ring
    std::size_t m_next = 0;
    std::size_t m_count = 0;
    std::array<float, 2 * kChunkFrames> m_weighted{};
};

} // namespace BASS
