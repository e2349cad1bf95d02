#pragma once

#include "audio/bass_defs.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace BASS {

/// Something that stands at a place of a stream's bytes.
struct StreamMark {
    enum class Kind {
        Title,    ///< `data` as the tag type lays it out
        LinkStart ///< a new Ogg link begins here
    };
    Kind kind = Kind::Title;
    std::uint64_t position = 0; ///< bytes of the stream before it
    DWORD tagType = 0;
    std::string data;
};

/// Where a decode thread takes its bytes from. *Thread*: that one; abort() from any.
class DecoderInput {
  public:
    enum class Status {
        Bytes,
        LinkEnd, ///< once before the first byte of each Ogg link
        Gap,     ///< bytes are missing here
        End,
        Aborted
    };
    struct Read {
        Status status = Status::End;
        std::size_t size = 0;
        std::uint64_t position = 0; ///< of the first byte in the stream
    };

    virtual ~DecoderInput() = default;
    /// Waits for a byte.
    virtual Read read(std::uint8_t* out, std::size_t max) = 0;
    /// Copies the bytes in front without taking them; waits until there are more than `known`, or
    /// no more will come (isEnd).
    virtual std::vector<std::uint8_t> peek(std::size_t max, std::size_t known, bool& isEnd) = 0;
    /// Takes a title that stands at or before `position`, the oldest first.
    virtual bool takeTitle(std::uint64_t /*position*/, StreamMark& /*title*/) { return false; }
    /// What the decoder takes, as far as it is known.
    virtual void setPace(std::size_t /*bytesPerSecond*/) {}
    /// Bytes from the start; 0: the input only runs forward.
    [[nodiscard]] virtual std::uint64_t seekableSize() const { return 0; }
    virtual bool seek(std::uint64_t /*position*/) { return false; }
    /// Why it ended: a BASS_ERROR_... code.
    [[nodiscard]] virtual int error() const { return BASS_OK; }

    virtual void abort() = 0;
    /// Any thread: bytes taken and received so far.
    [[nodiscard]] virtual std::uint64_t taken() const = 0;
    [[nodiscard]] virtual std::uint64_t received() const = 0;
};

} // namespace BASS
