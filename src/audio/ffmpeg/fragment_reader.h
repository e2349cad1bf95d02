#pragma once

#include "audio/ffmpeg/packet_framer.h"

#include <cstdint>
#include <vector>

namespace BASS {

/// The audio of one MP4 fragment as the elementary stream that carries its own framing.
struct FragmentAudio {
    FramedCodec codec = FramedCodec::None;
    std::vector<std::uint8_t> head;  ///< a native FLAC stream's beginning; else empty
    std::vector<std::uint8_t> bytes; ///< whole frames
};

/// bytes: the initialisation section with a fragment behind it (ISO/IEC 14496-12, section 8.8).
/// Any thread; takes about a millisecond.
[[nodiscard]] FragmentAudio readFragment(const std::vector<std::uint8_t>& bytes);

} // namespace BASS
