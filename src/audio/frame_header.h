#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

// Frame headers of the formats that carry their own framing: MPEG audio (ISO/IEC 11172-3, 13818-3
// and the 2.5 extension) and AAC in ADTS (ISO/IEC 13818-7). Pure functions, any thread, no
// allocation.

namespace BASS {

struct MpegFrame {
    int version;          ///< 1: MPEG 1, 2: MPEG 2, 25: MPEG 2.5
    int layer;            ///< 1 to 3
    int bitrate;          ///< bit/s
    int sampleRate;       ///< Hz
    int channels;         ///< 1 or 2
    int samples;          ///< samples a channel in this frame
    std::size_t bytes;    ///< the whole frame with its header
    std::size_t sideInfo; ///< layer 3: bytes of side information behind header and checksum
    bool hasChecksum;
};

struct AdtsFrame {
    int sampleRate;    ///< Hz, of the core coder
    int channels;      ///< channel configuration; 0: told inside the stream
    int profile;       ///< audio object type minus 1
    int samples;       ///< samples a channel (1024 for each raw block)
    std::size_t bytes; ///< the whole frame with its header
};

constexpr std::size_t kMpegHeaderBytes = 4;
constexpr std::size_t kAdtsHeaderBytes = 7;

/// Nothing where the bytes are no header, or one of the free-format kind (no length can be told).
std::optional<MpegFrame> parseMpegFrame(const std::uint8_t* data, std::size_t size);
std::optional<AdtsFrame> parseAdtsFrame(const std::uint8_t* data, std::size_t size);

/// Layer 3: how many bytes of the frames before it this frame's data reaches back to (0 to 511).
/// Nothing where the frame is not layer 3 or too few bytes are given.
std::optional<int>
mainDataBegin(const MpegFrame& frame, const std::uint8_t* data, std::size_t size);

/// True where two headers can belong to one stream: same version, layer, sample rate (the bitrate
/// and the stereo mode may vary from frame to frame).
bool isSameStream(const MpegFrame& a, const MpegFrame& b);
bool isSameStream(const AdtsFrame& a, const AdtsFrame& b);

} // namespace BASS
