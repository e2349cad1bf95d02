#pragma once

#include "audio/ffmpeg/byte_fifo.h"

#include <cstdint>
#include <memory>
#include <string>

namespace BASS {

/// A recording device as a stream of bytes: a WAV header without an end, then what is heard. What
/// nobody takes is forgotten, the oldest first.
///
/// *Thread*: as DecoderInput; SDL's own thread brings the sound. *Owner*: the channel. *Life*: an
/// SdlAudio outlives it.
class CaptureInput final : public DecoderInput {
  public:
    /// name: empty for the system's default. Null where the device does not open.
    static std::unique_ptr<CaptureInput> open(const std::string& name, int rate);
    ~CaptureInput() override;
    CaptureInput(const CaptureInput&) = delete;
    CaptureInput& operator=(const CaptureInput&) = delete;

    Read read(std::uint8_t* out, std::size_t max) override { return m_fifo.read(out, max); }
    std::vector<std::uint8_t> peek(std::size_t max, std::size_t known, bool& isEnd) override {
        return m_fifo.peek(max, known, isEnd);
    }
    [[nodiscard]] int error() const override { return m_fifo.error(); }
    void abort() override { m_fifo.abort(); }
    [[nodiscard]] std::uint64_t taken() const override { return m_fifo.taken(); }
    [[nodiscard]] std::uint64_t received() const override { return m_fifo.received(); }

  private:
    explicit CaptureInput(int rate);
    static void take(void* self, std::uint8_t* data, int bytes);

    ByteFifo m_fifo;
    std::uint32_t m_device = 0;
};

} // namespace BASS
