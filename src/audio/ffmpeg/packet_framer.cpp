#include "audio/ffmpeg/packet_framer.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <array>

namespace BASS {
namespace {

class BitReader {
  public:
    BitReader(const std::uint8_t* data, int size) : m_data(data), m_bits(size * 8) {}
    unsigned take(int count) {
        unsigned value = 0;
        for (int n = 0; n < count; ++n, ++m_at) {
            const unsigned bit = m_at < m_bits ? (m_data[m_at / 8] >> (7 - m_at % 8)) & 1U : 0U;
            value = value << 1 | bit;
        }
        return value;
    }

  private:
    const std::uint8_t* m_data;
    int m_bits;
    int m_at = 0;
};

/// "fLaC" and the one block that a stream must have (RFC 9639, section 6).
std::vector<std::uint8_t> flacHead(const AVCodecParameters& parameters) {
    constexpr int kStreamInfo = 34;
    if (parameters.extradata_size < kStreamInfo)
        return {};
    std::vector<std::uint8_t> head{'f', 'L', 'a', 'C', 0x80, 0, 0, kStreamInfo};
    head.insert(head.end(), parameters.extradata, parameters.extradata + kStreamInfo);
    return head;
}

} // namespace

PacketFramer::PacketFramer(const AVCodecParameters& parameters) {
    switch (parameters.codec_id) {
    case AV_CODEC_ID_AAC:
        m_adts = adtsParameters(parameters);
        m_codec = m_adts ? FramedCodec::Adts : FramedCodec::Unsupported;
        break;
    case AV_CODEC_ID_MP2:
    case AV_CODEC_ID_MP3:
        m_codec = FramedCodec::Mpeg;
        break;
    case AV_CODEC_ID_FLAC:
        m_head = flacHead(parameters);
        m_codec = m_head.empty() ? FramedCodec::Unsupported : FramedCodec::Flac;
        break;
    default:
        break;
    }
}

/// Out of the AudioSpecificConfig (ISO/IEC 14496-3, section 1.6.2.1).
std::optional<PacketFramer::Adts>
PacketFramer::adtsParameters(const AVCodecParameters& parameters) {
    constexpr unsigned kSbr = 5;
    constexpr unsigned kPs = 29;
    constexpr unsigned kOwnRate = 15;
    constexpr unsigned kMostProfile = 4; // two bits in the header
    constexpr unsigned kRates = 13;
    constexpr unsigned kMostChannels = 7;
    if (parameters.extradata_size < 2)
        return std::nullopt;
    BitReader bits(parameters.extradata, parameters.extradata_size);
    unsigned type = bits.take(5);
    const unsigned rate = bits.take(4);
    const unsigned channels = bits.take(4);
    if (type == kSbr || type == kPs) { // the core coder is named behind them
        if (bits.take(4) == kOwnRate)
            bits.take(24);
        type = bits.take(5);
    }
    if (type < 1 || type > kMostProfile || rate >= kRates || channels < 1 ||
        channels > kMostChannels)
        return std::nullopt;
    return Adts{type - 1, rate, channels};
}

void PacketFramer::append(const std::uint8_t* packet,
                          int size,
                          std::vector<std::uint8_t>& out) const {
    constexpr int kMostAdts = (1 << 13) - 8;
    if (size <= 0 || (m_adts && size > kMostAdts))
        return;
    if (m_adts)
        appendAdtsHeader(size, out);
    out.insert(out.end(), packet, packet + size);
}

/// ISO/IEC 13818-7, section 6.2: one raw block, no checksum.
void PacketFramer::appendAdtsHeader(int payload, std::vector<std::uint8_t>& out) const {
    const auto bytes = static_cast<unsigned>(payload + 7);
    const auto byte = [](unsigned value) { return static_cast<std::uint8_t>(value & 0xFF); };
    const std::array<std::uint8_t, 7> header{
        0xFF,
        0xF1,
        byte(m_adts->profile << 6 | m_adts->rateIndex << 2 | m_adts->channels >> 2),
        byte((m_adts->channels & 3) << 6 | bytes >> 11),
        byte(bytes >> 3),
        byte((bytes & 7) << 5 | 0x1F),
        0xFC};
    out.insert(out.end(), header.begin(), header.end());
}

} // namespace BASS
