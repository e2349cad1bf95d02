#pragma once

#include <atomic>
#include <cstdint>

namespace BASS {

/// A volume that moves without clicks, set by one side and followed by the output callback without
/// a lock. A command that the output has not met yet is folded into the next one, so that "to 0,
/// then slide up" starts at 0 however quickly both come.
class GainRamp {
  public:
    // --- control side, one thread at a time -----------------------------------------------------
    /// Takes the value over within `frames` (0: at once); no end is reported.
    void set(float value, std::uint32_t frames);
    /// As set(); advance() reports the end.
    void slide(float value, std::uint32_t frames);
    /// What is heard now, or will be once the output runs.
    [[nodiscard]] float current() const;
    /// Any thread: nothing is heard, and nothing will be.
    [[nodiscard]] bool isMuted() const {
        return m_target.load() == 0.0F && current() == 0.0F && !isSliding();
    }
    [[nodiscard]] bool isSliding() const { return m_slidesBegun.load() != m_slidesEnded.load(); }

    // --- output callback ------------------------------------------------------------------------
    void takeCommand();
    [[nodiscard]] bool isSteady() const { return m_framesLeft == 0; }
    [[nodiscard]] float gain() const { return m_gain; }
    /// The gain of the next frame of a ramp.
    float next();
    /// True once after a slide has reached its end.
    bool takeSlideEnd();

  private:
    void publish(float value, std::uint32_t frames, bool isSlide);

    // a command, guarded by its sequence number: odd while it is being written
    std::atomic<std::uint32_t> m_sequence{0};
    std::atomic<std::uint32_t> m_taken{0}; ///< sequence of the last command that the output met
    std::atomic<float> m_from{-1.0F};      ///< below 0: from where the gain is
    std::atomic<float> m_target{1.0F};
    std::atomic<std::uint32_t> m_frames{0};
    std::atomic<std::uint32_t> m_slidesBegun{0};
    std::atomic<std::uint32_t> m_slidesEnded{0};
    std::atomic<float> m_heard{1.0F};

    // output callback only
    float m_gain = 1.0F;
    float m_goal = 1.0F;
    float m_step = 0.0F;
    std::uint32_t m_framesLeft = 0;
    std::uint32_t m_slide = 0; ///< number of the slide under way
    bool m_hasEnded = false;
};

} // namespace BASS
