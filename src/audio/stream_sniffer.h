#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// What a stream's first bytes are. The bytes decide; what a server says of them only breaks a tie.
// Pure, any thread, no allocation.

namespace BASS {

enum class StreamFormat {
    None,
    Mpeg, ///< MPEG audio, layers 1 to 3
    Adts, ///< AAC in ADTS
    OggVorbis,
    OggOpus,
    OggFlac,
    Flac, ///< native
    Mp4,
    Wav,
    Aiff,
    Asf,
};

struct SniffResult {
    enum class Verdict {
        NeedMore, ///< call again with more bytes from the same start
        SkipTag,  ///< an ID3v2 tag of `offset` bytes stands first: call again with what follows it
        Found,    ///< `format`, whose first whole frame, page or box begins at `offset`
        NotAudio, ///< a page of text, a playlist, or nothing known
    };
    Verdict verdict = Verdict::NeedMore;
    StreamFormat format = StreamFormat::None;
    std::size_t offset = 0;
};

/// A verdict is reached from this many bytes at the latest.
constexpr std::size_t kSniffBytes = 16384;

/// data: the first bytes of the stream (or those behind a skipped tag). isEnd: no more will come.
/// contentType: the server's word, may be empty.
[[nodiscard]] SniffResult sniffStream(const std::uint8_t* data,
                                      std::size_t size,
                                      bool isEnd,
                                      std::string_view contentType = {});

[[nodiscard]] constexpr bool isOgg(StreamFormat format) {
    return format == StreamFormat::OggVorbis || format == StreamFormat::OggOpus ||
           format == StreamFormat::OggFlac;
}

} // namespace BASS
