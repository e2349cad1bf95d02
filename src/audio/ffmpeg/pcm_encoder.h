#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace BASS {

/// What turns samples into a file's bytes. *Thread*: one, from open() to the end.
class PcmEncoder {
  public:
    /// Bytes that belong at `offset`: behind everything so far, or instead of something.
    using Write =
        std::function<void(const std::uint8_t* data, std::size_t size, std::int64_t offset)>;

    PcmEncoder() = default;
    virtual ~PcmEncoder() = default;
    PcmEncoder(const PcmEncoder&) = delete;
    PcmEncoder& operator=(const PcmEncoder&) = delete;

    /// BASS_OK, or why it does not start.
    virtual int open() = 0;
    /// Interleaved stereo at the device's rate. False: it has failed for good.
    virtual bool encode(const float* samples, std::size_t frames) = 0;
    /// Ends the file with what has been encoded. False as with encode().
    virtual bool finish() = 0;
    /// Called several times a second while there is nothing to encode; only if needsCare().
    virtual bool tend() { return true; }
    [[nodiscard]] virtual bool needsCare() const { return false; }
};

} // namespace BASS
