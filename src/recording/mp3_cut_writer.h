#pragma once

#include "recording/cut_writer.h"
#include "recording/mp3_info_frame.h"

namespace BASS {

/// MPEG audio. A layer 3 file begins with an Info frame and a short pre-roll that the Info frame
/// marks as encoder delay, so that the first audible frame finds its bit reservoir and its overlap
/// and the decodes of all files in a row are the decode of the whole. The pre-roll is the one frame
/// before the cut (two in the half-rate versions, whose frames hold one granule), and before it,
/// where that frame reaches back, a silent frame that carries the main data it needs.
///
/// Where nothing lies before the first frame (the recording begins, or a gap), frames whose
/// reservoir is missing, and those that the decoder needs to settle after them, are marked by the
/// same delay: they are in the file and not heard. Frames behind a gap inside a file stay as
/// they were served.
///
/// Byte-exact files and layers 1 and 2 have neither Info frame nor pre-roll.
class Mp3CutWriter final : public CutWriter {
  public:
    Mp3CutWriter(ByteSink& sink, const FrameHistory& before, bool isByteExact);

    void write(const AudioFrame& frame) override;
    void takeBack(const FrameHistory& frames) override;
    void flush() override;
    void finish() override;
    [[nodiscard]] double seconds() const override;

  private:
    void begin();
    void beginAfter(const FrameHistory& before);
    void beginWithout();
    void writeLead(const QByteArray& bytes);
    void writeFrame(const AudioFrame& frame);
    void noteBitrate(const QByteArray& frame);

    ByteSink& m_sink;
    FrameHistory m_before;
    FrameHistory m_waiting; ///< first frames, until it is known from which one on they decode
    bool m_isPlain;         ///< no Info frame
    bool m_hasBegun = false;
    Mp3SeekTable m_table; ///< of the frames behind the Info frame
    QByteArray m_model;   ///< the header that the Info frame is made from
    int m_delayFrames = 0;
    qint64 m_frames = 0; ///< as given to write()
    qint64 m_samples = 0;
    int m_sampleRate = 0;
    int m_frameSamples = 0;
    int m_bitrateIndex = 0;
    bool m_isVariable = false;
};

} // namespace BASS
