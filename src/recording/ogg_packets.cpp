#include "recording/ogg_packets.h"

#include "recording/flac_frame.h"

#include <vorbis/codec.h>

#include <array>

namespace BASS {
namespace {

const std::uint8_t* raw(const QByteArray& bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.constData());
}

/// A packet as libogg wants it; the bytes are only read.
ogg_packet asOggPacket(const QByteArray& bytes, long number) {
    ogg_packet packet{};
    packet.packet = const_cast<unsigned char*>(raw(bytes));
    packet.bytes = bytes.size();
    packet.b_o_s = number == 0 ? 1 : 0;
    packet.packetno = number;
    return packet;
}

/// Samples at 48 kHz (RFC 6716, section 3.1).
qint64 opusSamples(const QByteArray& packet) {
    if (packet.isEmpty())
        return 0;
    const unsigned toc = raw(packet)[0];
    const unsigned config = toc >> 3;
    constexpr std::array<qint64, 4> kSilk{480, 960, 1920, 2880};
    const qint64 frame = config < 12   ? kSilk[config & 3]
                         : config < 16 ? (config & 1 ? 960 : 480)
                                       : qint64(120) << (config & 3);
    switch (toc & 3) {
    case 0:
        return frame;
    case 3:
        return packet.size() > 1 ? frame * (raw(packet)[1] & 63) : 0;
    default:
        return 2 * frame;
    }
}

} // namespace

struct OggPacketLengths::Private {
    OggCodec codec = OggCodec::Unknown;
    vorbis_info info{};
    vorbis_comment comment{};
    long lastBlock = 0;
};

OggPacketLengths::OggPacketLengths(const OggLink& link) : m_private(std::make_unique<Private>()) {
    m_private->codec = link.codec;
    vorbis_info_init(&m_private->info);
    vorbis_comment_init(&m_private->comment);
    if (link.codec != OggCodec::Vorbis)
        return;
    long number = 0;
    for (const QByteArray& header : link.headers) {
        ogg_packet packet = asOggPacket(header, number++);
        if (vorbis_synthesis_headerin(&m_private->info, &m_private->comment, &packet) != 0) {
            m_private->codec = OggCodec::Unknown;
            break;
        }
    }
}

OggPacketLengths::~OggPacketLengths() {
    vorbis_comment_clear(&m_private->comment);
    vorbis_info_clear(&m_private->info);
}

qint64 OggPacketLengths::samples(const QByteArray& packet) {
    if (m_private->codec == OggCodec::Opus)
        return opusSamples(packet);
    if (m_private->codec == OggCodec::Flac) {
        const auto head = parseFlacFrame(raw(packet), static_cast<std::size_t>(packet.size()));
        return head ? head->samples : 0;
    }
    if (m_private->codec != OggCodec::Vorbis)
        return 0;
    ogg_packet vorbis = asOggPacket(packet, 3);
    const long block = vorbis_packet_blocksize(&m_private->info, &vorbis);
    if (block <= 0)
        return 0;
    // neighbouring blocks overlap by half (Vorbis I, section 1.3.2)
    const long samples = m_private->lastBlock > 0 ? (m_private->lastBlock + block) / 4 : 0;
    m_private->lastBlock = block;
    return samples;
}

bool areOggHeadersComplete(OggCodec codec, const std::vector<QByteArray>& packets) {
    if (packets.empty())
        return false;
    if (codec == OggCodec::Vorbis)
        return packets.size() >= 3;
    if (codec == OggCodec::Opus)
        return packets.size() >= 2;
    // a metadata block's first bit says whether it is the last one
    return packets.size() >= 2 && (raw(packets.back())[0] & 0x80) != 0;
}

void readOggFormat(OggLink& link) {
    const QByteArray& first = link.headers.front();
    const std::uint8_t* const data = raw(first);
    if (link.codec == OggCodec::Opus && first.size() >= 19) {
        link.sampleRate = 48000;
        link.channels = data[9];
    } else if (link.codec == OggCodec::Vorbis && first.size() >= 30) {
        link.sampleRate = data[12] | (data[13] << 8) | (data[14] << 16);
        link.channels = data[11];
    } else if (link.codec == OggCodec::Flac && first.size() >= kFlacInOggLead + kFlacInfoBytes) {
        const FlacInfo info = parseFlacInfo(data + kFlacInOggLead);
        link.sampleRate = info.sampleRate;
        link.channels = info.channels;
    }
}

} // namespace BASS
