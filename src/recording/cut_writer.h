#pragma once

#include "recording/audio_frame.h"
#include "recording/byte_sink.h"

#include <QString>

#include <deque>
#include <memory>

namespace BASS {

/// The frames directly before a file's first one, oldest first; none where a gap lies between.
using FrameHistory = std::deque<AudioFrame>;

/// Writes the frames of one format into one file so that the file decodes from its first frame and
/// no audio is lost or doubled between it and its neighbours.
///
/// *Thread*: one at a time (the recorder's writer thread). *Owner*: the open file; the sink
/// outlives it. *Life*: write(), flush() and takeBack() in any order, then finish() once.
class CutWriter {
  public:
    virtual ~CutWriter() = default;

    virtual void write(const AudioFrame& frame) = 0;
    /// Forgets the newest `frames`, which were written last: they belong to the next file.
    virtual void takeBack(const FrameHistory& frames) = 0;
    /// Hands everything to the sink that it can take.
    virtual void flush() = 0;
    /// Completes the file. Nothing may follow.
    virtual void finish() = 0;
    /// Seconds of audio that a decoder gives for this file.
    [[nodiscard]] virtual double seconds() const = 0;
};

struct CutStart {
    StreamFormat format = StreamFormat::Unknown;
    bool isMp3ByteExact = false;
    bool isM4a = false;  ///< ADTS frames go into an M4A file
    FrameHistory before; ///< what lies directly before the first frame
    quint32 serial = 0;  ///< Ogg: of the first logical stream; further ones count up
};

/// Frames that the history must hold for every format's pre-roll.
constexpr int kPreRollFrames = 32;

std::unique_ptr<CutWriter> makeCutWriter(ByteSink& sink, CutStart start);

} // namespace BASS
