#pragma once

#include <cstdint>
#include <optional>
#include <vector>

struct AVCodecParameters;

namespace BASS {

enum class FramedCodec {
    None, ///< there is no audio
    Mpeg,
    Adts,
    Flac,
    Unsupported,
};

/// Gives packets out of a container the framing with which they stand alone: what a recorder cuts
/// and every player plays. One thread at a time.
class PacketFramer {
  public:
    explicit PacketFramer(const AVCodecParameters& parameters);

    [[nodiscard]] FramedCodec codec() const { return m_codec; }
    /// A native FLAC stream's beginning; else empty.
    [[nodiscard]] const std::vector<std::uint8_t>& head() const { return m_head; }
    void append(const std::uint8_t* packet, int size, std::vector<std::uint8_t>& out) const;

  private:
    /// What an ADTS header says of a stream.
    struct Adts {
        unsigned profile;
        unsigned rateIndex;
        unsigned channels;
    };
    static std::optional<Adts> adtsParameters(const AVCodecParameters& parameters);
    void appendAdtsHeader(int payload, std::vector<std::uint8_t>& out) const;

    FramedCodec m_codec = FramedCodec::Unsupported;
    std::optional<Adts> m_adts;
    std::vector<std::uint8_t> m_head;
};

} // namespace BASS
