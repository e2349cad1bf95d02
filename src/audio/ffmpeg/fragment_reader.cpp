#include "audio/ffmpeg/fragment_reader.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace BASS {
namespace {

struct FreePacket {
    void operator()(AVPacket* p) const { av_packet_free(&p); }
};
struct FreeFormat {
    void operator()(AVFormatContext* p) const { avformat_close_input(&p); }
};
struct FreeIo {
    void operator()(AVIOContext* p) const {
        av_freep(&p->buffer);
        avio_context_free(&p);
    }
};

/// Bytes in memory, as the demuxer reads them.
class Memory {
  public:
    explicit Memory(const std::vector<std::uint8_t>& bytes) : m_bytes(bytes) {
        constexpr int kBlock = 32768;
        m_io.reset(avio_alloc_context(static_cast<unsigned char*>(av_malloc(kBlock)),
                                      kBlock,
                                      0,
                                      this,
                                      &Memory::read,
                                      nullptr,
                                      &Memory::seek));
    }
    [[nodiscard]] AVIOContext* io() const { return m_io.get(); }

  private:
    static int read(void* self, std::uint8_t* out, int max) {
        auto* const memory = static_cast<Memory*>(self);
        const std::size_t count =
            std::min(static_cast<std::size_t>(max), memory->m_bytes.size() - memory->m_at);
        std::copy_n(
            memory->m_bytes.begin() + static_cast<std::ptrdiff_t>(memory->m_at), count, out);
        memory->m_at += count;
        return count > 0 ? static_cast<int>(count) : AVERROR_EOF;
    }
    static std::int64_t seek(void* self, std::int64_t offset, int whence) {
        auto* const memory = static_cast<Memory*>(self);
        const auto size = static_cast<std::int64_t>(memory->m_bytes.size());
        if ((whence & AVSEEK_SIZE) != 0)
            return size;
        const int from = whence & ~AVSEEK_FORCE;
        if (from == SEEK_CUR)
            offset += static_cast<std::int64_t>(memory->m_at);
        else if (from == SEEK_END)
            offset += size;
        if (offset < 0 || offset > size)
            return -1;
        memory->m_at = static_cast<std::size_t>(offset);
        return offset;
    }

    const std::vector<std::uint8_t>& m_bytes;
    std::size_t m_at = 0;
    std::unique_ptr<AVIOContext, FreeIo> m_io;
};

/// What an ADTS header says of a stream, out of its AudioSpecificConfig (ISO/IEC 14496-3, 1.6.2.1).
struct AdtsParameters {
    unsigned profile;
    unsigned rateIndex;
    unsigned channels;
};

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

std::optional<AdtsParameters> adtsParameters(const AVCodecParameters& parameters) {
    constexpr unsigned kSbr = 5;
    constexpr unsigned kPs = 29;
    constexpr unsigned kOwnRate = 15;
    constexpr unsigned kMostProfile = 4; // two bits in the header
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
    if (type < 1 || type > kMostProfile || rate >= 13 || channels < 1 || channels > 7)
        return std::nullopt;
    return AdtsParameters{type - 1, rate, channels};
}

/// ISO/IEC 13818-7, section 6.2: one raw block, no checksum.
std::array<std::uint8_t, 7> adtsHeader(const AdtsParameters& p, std::size_t payload) {
    const auto bytes = static_cast<unsigned>(payload + 7);
    const auto byte = [](unsigned value) { return static_cast<std::uint8_t>(value & 0xFF); };
    return {0xFF,
            0xF1,
            byte(p.profile << 6 | p.rateIndex << 2 | p.channels >> 2),
            byte((p.channels & 3) << 6 | bytes >> 11),
            byte(bytes >> 3),
            byte((bytes & 7) << 5 | 0x1F),
            0xFC};
}

/// "fLaC" and the one block that a stream must have (RFC 9639, section 6).
std::vector<std::uint8_t> flacHead(const AVCodecParameters& parameters) {
    constexpr int kStreamInfo = 34;
    if (parameters.extradata_size < kStreamInfo)
        return {};
    std::vector<std::uint8_t> head{'f', 'L', 'a', 'C', 0x80, 0, 0, kStreamInfo};
    head.insert(head.end(), parameters.extradata, parameters.extradata + kStreamInfo);
    return head;
}

void readPackets(AVFormatContext& format,
                 int stream,
                 const std::optional<AdtsParameters>& adts,
                 std::vector<std::uint8_t>& out) {
    constexpr int kMostAdts = (1 << 13) - 8;
    const std::unique_ptr<AVPacket, FreePacket> packet(av_packet_alloc());
    while (av_read_frame(&format, packet.get()) >= 0) {
        const bool isWanted = packet->stream_index == stream && packet->size > 0 &&
                              (!adts || packet->size <= kMostAdts);
        if (isWanted && adts) {
            const auto header = adtsHeader(*adts, static_cast<std::size_t>(packet->size));
            out.insert(out.end(), header.begin(), header.end());
        }
        if (isWanted)
            out.insert(out.end(), packet->data, packet->data + packet->size);
        av_packet_unref(packet.get());
    }
}

} // namespace

FragmentAudio readFragment(const std::vector<std::uint8_t>& bytes) {
    FragmentAudio result;
    const Memory memory(bytes);
    AVFormatContext* context = avformat_alloc_context();
    context->pb = memory.io();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    if (avformat_open_input(&context, nullptr, av_find_input_format("mov"), nullptr) < 0)
        return result; // has freed the context
    const std::unique_ptr<AVFormatContext, FreeFormat> format(context);
    const int stream = av_find_best_stream(context, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (stream < 0)
        return result;
    const AVCodecParameters& parameters = *context->streams[stream]->codecpar;
    std::optional<AdtsParameters> adts;
    switch (parameters.codec_id) {
    case AV_CODEC_ID_AAC:
        adts = adtsParameters(parameters);
        result.codec = adts ? FragmentAudio::Codec::Adts : FragmentAudio::Codec::Unsupported;
        break;
    case AV_CODEC_ID_MP3:
        result.codec = FragmentAudio::Codec::Mpeg;
        break;
    case AV_CODEC_ID_FLAC:
        result.codec = FragmentAudio::Codec::Flac;
        result.head = flacHead(parameters);
        break;
    default:
        result.codec = FragmentAudio::Codec::Unsupported;
        break;
    }
    if (result.codec != FragmentAudio::Codec::Unsupported)
        readPackets(*context, stream, adts, result.bytes);
    return result;
}

} // namespace BASS
