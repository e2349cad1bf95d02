#pragma once

#include "recording/audio_frame.h"

#include <vector>

namespace BASS {

using FrameList = std::vector<AudioFrame>;

/// Takes the bytes of one connection in any chunking and gives out what may be cut between.
/// Pure; never throws; memory is bounded whatever the bytes are.
class StreamParser {
  public:
    virtual ~StreamParser() = default;
    /// Appends the frames that are complete to `frames`.
    virtual void push(const char* data, qsizetype size, FrameList& frames) = 0;
    /// No further byte follows; gives out what is whole.
    virtual void finish(FrameList& frames) = 0;
    /// Bytes so far that belonged to no whole frame.
    [[nodiscard]] virtual qint64 droppedBytes() const = 0;
};

} // namespace BASS
