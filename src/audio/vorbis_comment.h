#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace BASS {

/// The comment block shared by Vorbis, Opus and FLAC (Vorbis I specification, section 5). Texts are
/// UTF-8 "NAME=value", as they stand. Pure, any thread; lengths that lie are answered with what was
/// readable before them.
struct VorbisComments {
    std::string vendor;
    std::vector<std::string> entries;

    /// The first value of a field, its name compared without regard to ASCII case; empty: none.
    [[nodiscard]] std::string value(const char* name) const;
};

/// `data` begins at the vendor length (behind "\x03vorbis", "OpusTags" or a FLAC block header).
std::optional<VorbisComments> parseVorbisComments(const std::uint8_t* data, std::size_t size);

} // namespace BASS
