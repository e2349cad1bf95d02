#pragma once

#include <cstddef>

namespace BASS {

/// A second-order filter's numbers, the first of the denominator being 1.
struct BiquadNumbers {
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;

    /// Peaking equalizer of one octave (R. Bristow-Johnson, "Audio EQ cookbook").
    static BiquadNumbers peak(double frequency, double gainDb, int rate);
    /// The two stages of BS.1770's weighting, for any rate.
    static BiquadNumbers loudnessShelf(int rate);
    static BiquadNumbers loudnessHighPass(int rate);

    /// Gain at a frequency, in decibels.
    [[nodiscard]] double responseDb(double frequency, int rate) const;
};

/// Filters stereo frames, both sides with the same numbers. Direct form I: where the numbers change
/// while it runs, what it remembers is the sound itself, which stays right.
class StereoBiquad {
  public:
    void setNumbers(const BiquadNumbers& numbers) { m_numbers = numbers; }
    /// `out` may be `in`.
    void process(const float* in, float* out, std::size_t frames);
    /// As process() with numbers that change nothing.
    void pass(const float* samples, std::size_t frames);
    void reset() { m_left = m_right = {}; }
    /// What it still rings with cannot be heard; where its numbers change nothing.
    [[nodiscard]] bool isAtRest() const { return m_left.isAtRest() && m_right.isAtRest(); }

  private:
    struct Side {
        double in1 = 0.0; ///< the frame before
        double in2 = 0.0;
        double out1 = 0.0;
        double out2 = 0.0;

        [[nodiscard]] bool isAtRest() const;
        void clean();
    };

    BiquadNumbers m_numbers;
    Side m_left;
    Side m_right;
};

} // namespace BASS
