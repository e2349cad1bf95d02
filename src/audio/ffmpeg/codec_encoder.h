#pragma once

#include "audio/encoder_options.h"
#include "audio/ffmpeg/pcm_encoder.h"

#include <memory>

namespace BASS {

/// One of FFmpeg's encoders and the container for it. What comes in is resampled and mixed down to
/// the format of the file.
class CodecEncoder final : public PcmEncoder {
  public:
    struct Setup {
        EncoderKind kind = EncoderKind::Mp3;
        EncoderOptions options;
        int inputRate = 44100;
        int inputChannels = 2; ///< stereo, or mono; interleaved
        int rate = 44100;      ///< of the file where the codec can; else the next one that it can
        int channels = 2;
        int bits = 16;           ///< FLAC
        bool canRewrite = false; ///< Write takes earlier offsets
    };

    CodecEncoder(const Setup& setup, Write write);
    ~CodecEncoder() override;

    int open() override;
    bool encode(const float* samples, std::size_t frames) override;
    bool finish() override;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace BASS
