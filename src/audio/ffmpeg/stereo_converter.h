#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

struct AVFrame;

namespace BASS {

/// Decoded frames of any rate, channels and sample format to interleaved stereo floats at one rate.
/// What needs only to be interleaved is not touched otherwise. *Thread*: one at a time.
class StereoConverter {
  public:
    explicit StereoConverter(int outputRate);
    ~StereoConverter();
    StereoConverter(const StereoConverter&) = delete;
    StereoConverter& operator=(const StereoConverter&) = delete;

    /// Appends the frame to `out`; before one of another shape, what was left of the last.
    void convert(const AVFrame& frame, std::vector<float>& out);
    /// Appends what is still held.
    void drain(std::vector<float>& out);
    /// What is held is dropped.
    void reset();
    /// A frame has come, and can be converted.
    [[nodiscard]] bool isReady() const;
    /// Of the newest frame; 0: none has come that can be converted.
    [[nodiscard]] int sampleRate() const;
    [[nodiscard]] int channels() const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace BASS
