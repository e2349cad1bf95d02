#pragma once

#include "recording/audio_frame.h"

#include <vector>

namespace BASS {

using FrameList = std::vector<AudioFrame>;

/// So much in a row that is none of a format's frames may be another format: three of its frames
/// find room in it several times over.
constexpr int kForeignBytes = 16384;
constexpr int kForeignBytesAtEnd = 2048;

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
    /// Where so much in a row was none of its frames that another format may have begun: all behind
    /// the last frame. Empty otherwise. Each stretch is given once; at the `isEnd` of a connection
    /// a shorter one too.
    virtual QByteArray takeForeign(bool /*isEnd*/) { return {}; }
};

} // namespace BASS
