#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

// ID3v2 tags as streams carry them: at the start of a segment, as timed metadata, before a file
// (ID3v2.2, 2.3 and 2.4). Pure, any thread; lengths that lie are answered with what was readable.

namespace BASS {

struct Id3Texts {
    std::string artist; ///< UTF-8; several are joined by " / "
    std::string title;

    [[nodiscard]] bool isEmpty() const { return artist.empty() && title.empty(); }
};

constexpr std::size_t kId3HeaderBytes = 10;

/// Bytes of the tag that begins here, header and footer included; 0: no tag begins here (or fewer
/// bytes than its header has are given).
[[nodiscard]] std::size_t id3TagBytes(const std::uint8_t* data, std::size_t size);

/// Nothing where no tag begins.
[[nodiscard]] std::optional<Id3Texts> parseId3Tag(const std::uint8_t* data, std::size_t size);

} // namespace BASS
