#pragma once

#include <cstddef>
#include <cstdint>

namespace BASS {

/// A layer 3 frame may lean on data of frames before it. Whoever joins a stream in the middle would
/// hear them decoded from nothing, at several times full scale: this tells which frames to drop.
/// Pure, one thread at a time.
class ReservoirGate {
  public:
    enum class Verdict {
        Play,
        PlayFirst, ///< the first one after dropped ones: fade it in
        Drop,
    };

    /// packet: one whole frame. Everything but layer 3 plays.
    Verdict judge(const std::uint8_t* packet, std::size_t size);
    /// Frames before the next one are missing.
    void reset();

  private:
    bool m_isOpen = false;
    bool m_isFirst = true;
    int m_dropAfter = 0;     ///< frames still to drop although their data is complete
    std::size_t m_saved = 0; ///< bytes of main data seen
};

} // namespace BASS
