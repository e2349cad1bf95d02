#pragma once

#include "recording/stream_parser.h"

#include <cstdint>

namespace BASS {

/// Walks the frames of a native FLAC stream that begins with its header; works from any frame on
/// once the header was given. A frame ends where its checksum is right and another one's header
/// follows.
class FlacSplitter final : public StreamParser {
  public:
    explicit FlacSplitter(qint64 position);

    void push(const char* data, qsizetype size, FrameList& frames) override;
    void finish(FrameList& frames) override;
    [[nodiscard]] qint64 droppedBytes() const override { return m_dropped; }

  private:
    bool takeHeader();
    void walk(FrameList& frames, bool isEnd);
    bool seek();
    bool scan(FrameList& frames, bool isEnd);
    void emitFrame(std::size_t bytes, FrameList& frames);
    void remove(std::size_t bytes);
    [[nodiscard]] const std::uint8_t* bytes(std::size_t at = 0) const;
    [[nodiscard]] std::size_t left(std::size_t at = 0) const;

    QByteArray m_buffer;
    std::size_t m_cursor = 0;  ///< first byte of m_buffer that is not dealt with
    std::size_t m_scanned = 0; ///< bytes from the cursor that the checksum covers
    std::uint16_t m_checksum = 0;
    QByteArray m_header;
    int m_sampleRate = 0;
    int m_channels = 0;
    qint64 m_position;
    qint64 m_dropped = 0;
    bool m_isInSync = false;
    bool m_hasGap = true;
};

} // namespace BASS
