#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace BASS {

/// Interleaved floats to the rate, channels and sample format that an encoder wants. What needs no
/// change passes bit by bit. *Thread*: one at a time.
class PcmConverter {
  public:
    struct Input {
        int rate;
        int channels; ///< 1 or 2
    };
    struct Output {
        int rate;
        int channels;     ///< beyond two the others are silent
        int sampleFormat; ///< AVSampleFormat
    };

    PcmConverter(const Input& input, const Output& output);
    ~PcmConverter();
    PcmConverter(const PcmConverter&) = delete;
    PcmConverter& operator=(const PcmConverter&) = delete;

    [[nodiscard]] bool isValid() const;
    /// Frames in planes(), or below 0. samples null: what the resampler still holds.
    int convert(const float* samples, std::size_t frames);
    /// One pointer a plane; valid until the next convert().
    [[nodiscard]] void** planes() const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace BASS
