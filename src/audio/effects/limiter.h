#pragma once

#include <array>
#include <cstddef>

namespace BASS {

/// Keeps what effects have made louder below full scale, whatever comes. It looks ahead within the
/// block that it is given, so it delays nothing. Any one thread.
class Limiter {
  public:
    /// What no sample exceeds: a tenth of a decibel is left for what follows.
    static constexpr float kCeiling = 0.98855F;

    explicit Limiter(int rate);

    /// Switched off it lets go within moments, then leaves everything alone.
    void setOn(bool isOn) { m_isOn = isOn; }
    [[nodiscard]] bool isActive() const { return m_isOn || m_gain != 1.0; }
    void process(float* samples, std::size_t frames);

  private:
    static constexpr std::size_t kBlockFrames = 1024;
    void processBlock(float* samples, std::size_t frames);

    const float m_fall;     ///< gain per frame at most, where the peak is seen coming
    const double m_recover; ///< part of the way back per frame
    bool m_isOn = false;
    double m_gain = 1.0; ///< of the last frame
    std::array<float, kBlockFrames> m_gains{};
};

} // namespace BASS
