#pragma once

#include "recording/stream_parser.h"

#include <cstdint>
#include <optional>

namespace BASS {

/// What a self-framing header tells.
struct FrameHead {
    std::size_t bytes = 0; ///< of the whole frame
    int samples = 0;
    int sampleRate = 0;
    quint32 stream = 0; ///< equal for frames of one stream
};

using FrameHeadParser = std::optional<FrameHead> (*)(const std::uint8_t* data, std::size_t size);

std::optional<FrameHead> mpegHead(const std::uint8_t* data, std::size_t size);
std::optional<FrameHead> adtsHead(const std::uint8_t* data, std::size_t size);

/// Walks MPEG audio or ADTS frames in bytes of any chunking. A frame is given out when the header
/// behind it confirms it. What lies between frames (tags, the torn half of a frame) is dropped and
/// counted; a whole frame never is.
class FrameSplitter final : public StreamParser {
  public:
    FrameSplitter(FrameHeadParser parser, std::size_t headerBytes, qint64 position);

    void push(const char* data, qsizetype size, FrameList& frames) override;
    void finish(FrameList& frames) override;
    [[nodiscard]] qint64 droppedBytes() const override { return m_dropped; }
    QByteArray takeForeign(bool isEnd) override;

  private:
    enum class Answer { No, Yes, NeedMore };

    void walk(FrameList& frames, bool isEnd);
    bool step(FrameList& frames, bool isEnd);
    bool seek(bool isEnd);
    Answer isChain(std::size_t at, bool isEnd) const;
    Answer isTorn(std::size_t frameBytes, bool isEnd, std::size_t& goodAt) const;
    void emitFrame(const FrameHead& head, FrameList& frames);
    void drop(std::size_t bytes);
    void compact();

    [[nodiscard]] const std::uint8_t* bytes(std::size_t at = 0) const;
    [[nodiscard]] std::size_t left(std::size_t at = 0) const;
    [[nodiscard]] std::optional<FrameHead> head(std::size_t at) const;

    FrameHeadParser m_parser;
    std::size_t m_headerBytes;
    QByteArray m_buffer;
    std::size_t m_cursor = 0; ///< first byte of m_buffer that is not dealt with
    qint64 m_position;        ///< of m_cursor
    qint64 m_dropped = 0;
    QByteArray m_foreign;            ///< dropped since the last frame, or since it was given
    std::optional<quint32> m_stream; ///< of the newest frame
    bool m_isInSync = false;
    bool m_hasGap = true;
};

} // namespace BASS
