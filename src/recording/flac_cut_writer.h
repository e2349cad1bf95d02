#pragma once

#include "recording/cut_writer.h"

namespace BASS {

/// Native FLAC: the stream's header is repeated at the start of every file, and frames are numbered
/// from zero, so that a file is complete in itself and can be searched. The audio bits stay as they
/// were served. Its length is written into the header when the file is finished.
class FlacCutWriter final : public CutWriter {
  public:
    explicit FlacCutWriter(ByteSink& sink);

    void write(const AudioFrame& frame) override;
    void takeBack(const FrameHistory& frames) override;
    void flush() override {}
    void finish() override;
    [[nodiscard]] double seconds() const override;

  private:
    ByteSink& m_sink;
    QByteArray m_header;
    qint64 m_samples = 0;
    quint64 m_frames = 0;
    int m_sampleRate = 0;
    std::deque<qint64> m_sizes; ///< of the newest frames as written
};

} // namespace BASS
