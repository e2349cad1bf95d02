#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

// The box structure of MP4 files (ISO/IEC 14496-12), as far as it takes to play one front to back
// whose index ("moov") stands behind its audio ("mdat"). Pure, any thread.

namespace BASS {

struct Mp4Box {
    std::uint32_t type = 0;        ///< four characters, the first in the highest byte
    std::uint64_t headerBytes = 0; ///< 8, or 16 with a long size
    std::uint64_t bytes = 0;       ///< with its header; 0: to the end of the file
};

constexpr std::size_t kMp4BoxHeaderBytes = 16;

constexpr std::uint32_t mp4Type(const char (&name)[5]) {
    return static_cast<std::uint32_t>(name[0]) << 24 | static_cast<std::uint32_t>(name[1]) << 16 |
           static_cast<std::uint32_t>(name[2]) << 8 | static_cast<std::uint32_t>(name[3]);
}

/// Nothing where no box begins, or too few of its header's bytes are given.
[[nodiscard]] std::optional<Mp4Box> parseMp4Box(const std::uint8_t* data, std::size_t size);

/// Makes every chunk offset of an index greater by `by`, as it must be when the index is moved in
/// front of what it points at. False: it is damaged, or a 32-bit offset would not hold it.
[[nodiscard]] bool shiftMp4Offsets(std::vector<std::uint8_t>& moov, std::uint64_t by);

} // namespace BASS
