#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// HTTP Live Streaming playlists (RFC 8216). Pure, any thread. Addresses stay as they were written,
// relative to the playlist's own; "section" in comments means one of that document.

namespace BASS {

struct HlsKey {
    enum class Method {
        None,
        Aes128, ///< whole segments, AES-128 in CBC mode with PKCS#7 padding
        Other,  ///< not one that can be undone here
    };
    Method method = Method::None;
    std::string uri;
    /// Missing: the segment's sequence number, big-endian.
    std::optional<std::array<std::uint8_t, 16>> iv;
};

/// A part of a resource (section 4.3.2.2); length 0: the whole.
struct HlsResource {
    std::string uri;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;

    [[nodiscard]] bool operator==(const HlsResource& o) const {
        return uri == o.uri && offset == o.offset && length == o.length;
    }
};

struct HlsSegment {
    HlsResource resource;
    std::uint64_t sequence = 0;
    double seconds = 0.0;
    std::string info; ///< what EXTINF says, "10.0,Artist - Title" for example
    HlsKey key;
    HlsResource map;        ///< what its bytes need before them; empty uri: nothing
    bool breaksOff = false; ///< EXT-X-DISCONTINUITY stands before it
    bool isMissing = false; ///< EXT-X-GAP: there is nothing to be had
};

struct HlsVariant {
    std::string uri;
    std::uint64_t bandwidth = 0; ///< bit/s
    std::string codecs;
    std::string audioGroup;
    bool hasVideo = false; ///< RESOLUTION or a codec of pictures is named
};

/// EXT-X-MEDIA of TYPE=AUDIO.
struct HlsRendition {
    std::string group;
    std::string uri; ///< empty: it is part of the variant's own stream
    bool isDefault = false;
    bool isAutoselect = false;
};

struct HlsPlaylist {
    enum class Kind {
        None, ///< not one of these playlists
        Master,
        Media,
    };
    Kind kind = Kind::None;
    // a master playlist
    std::vector<HlsVariant> variants;
    std::vector<HlsRendition> renditions;
    // a media playlist
    double targetSeconds = 0.0;
    bool hasEnd = false; ///< nothing will be added to it
    /// Where to begin, in seconds from the start or, negative, from the end (section 4.3.5.2).
    std::optional<double> startOffset;
    std::vector<HlsSegment> segments;
};

/// Longer lists lose their oldest segments: 100,000 of four seconds are four and a half days.
constexpr std::size_t kMaxHlsSegments = 100000;

/// What cannot be read is passed over. Never throws.
[[nodiscard]] HlsPlaylist parseHlsPlaylist(std::string_view text);

/// True as long as `text` may be the beginning of a playlist.
[[nodiscard]] bool mayBeHlsPlaylist(std::string_view text);

} // namespace BASS
