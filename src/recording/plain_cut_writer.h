#pragma once

#include "recording/cut_writer.h"

namespace BASS {

/// Frames as they come, without overlap: ADTS (whose frames overlap by half a window, so that a cut
/// costs a fade-in of 1023 samples and never a click), and whatever is not understood.
class PlainCutWriter final : public CutWriter {
  public:
    explicit PlainCutWriter(ByteSink& sink);

    void write(const AudioFrame& frame) override;
    void takeBack(const FrameHistory& frames) override;
    void flush() override {}
    void finish() override {}
    [[nodiscard]] double seconds() const override { return m_seconds; }

  private:
    ByteSink& m_sink;
    double m_seconds = 0;
};

} // namespace BASS
