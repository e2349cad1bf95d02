#pragma once

#include <optional>
#include <string_view>

namespace BASS {

enum class EncoderKind { Mp3, Vorbis, Flac, Aac, Wma };

/// What an encoder's options text says; zero or -1 where it says nothing.
struct EncoderOptions {
    enum class Mode { Default, Constant, Variable, Average };
    Mode mode = Mode::Default;
    int bitrate = 0;               ///< bit/s
    int minBitrate = 0;            ///< bit/s
    int maxBitrate = 0;            ///< bit/s
    std::optional<double> quality; ///< MP3 0 (best) to 9, Vorbis -1 to 10, WMA 1 to 100
    int compression = -1;          ///< FLAC: 0 to 8
    int sampleRate = 0;            ///< Hz
    int channels = 0;
    bool isOgg = false; ///< FLAC in Ogg
    bool isMp4 = false; ///< AAC in M4A
};

/// Nothing where a number is missing or out of its range. Unknown switches are logged and skipped.
std::optional<EncoderOptions> parseEncoderOptions(EncoderKind kind, std::string_view text);

} // namespace BASS
