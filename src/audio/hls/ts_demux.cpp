#include "audio/hls/ts_demux.h"

#include <algorithm>
#include <cstring>

namespace BASS {
namespace {

constexpr std::uint8_t kSync = 0x47;
constexpr std::size_t kMaxSection = 1024 + 3;
constexpr std::size_t kMaxTag = 1024 * 1024;
constexpr std::size_t kMaxTags = 16;
constexpr std::size_t kPesFixed = 9; ///< bytes of a PES header before its optional fields

// stream types of a programme map (ISO/IEC 13818-1 table 2-34, and timed ID3 in HLS)
constexpr int kMpeg1Audio = 0x03;
constexpr int kMpeg2Audio = 0x04;
constexpr int kAdts = 0x0F;
constexpr int kLatm = 0x11;
constexpr int kMetadataPes = 0x15;
constexpr int kAc3 = 0x81;
constexpr int kEac3 = 0x87;

int pidAt(const std::uint8_t* data) {
    return (data[0] & 0x1F) << 8 | data[1];
}

std::size_t lengthAt(const std::uint8_t* data) {
    return static_cast<std::size_t>((data[0] & 0x0F) << 8 | data[1]);
}

std::uint64_t timeAt(const std::uint8_t* d) {
    return static_cast<std::uint64_t>(d[0] >> 1 & 7) << 30 |
           static_cast<std::uint64_t>(d[1]) << 22 | static_cast<std::uint64_t>(d[2] >> 1) << 15 |
           static_cast<std::uint64_t>(d[3]) << 7 | static_cast<std::uint64_t>(d[4] >> 1);
}

/// Times are 33 bits long and wrap.
bool isReached(std::uint64_t tag, std::uint64_t audio) {
    constexpr std::uint64_t kMask = (std::uint64_t{1} << 33) - 1;
    return ((audio - tag) & kMask) <= kMask / 2;
}

} // namespace

void TsDemux::feed(const std::uint8_t* data, std::size_t size) {
    while (size > 0) {
        if (m_fill == 0 && *data != kSync) { // out of step: packets begin with the sync byte
            const auto* const sync =
                static_cast<const std::uint8_t*>(std::memchr(data, kSync, size));
            const std::size_t skip = sync == nullptr ? size : static_cast<std::size_t>(sync - data);
            data += skip;
            size -= skip;
            continue;
        }
        const std::size_t count = std::min(size, kPacketBytes - m_fill);
        std::copy_n(data, count, m_packet.begin() + static_cast<std::ptrdiff_t>(m_fill));
        m_fill += count;
        data += count;
        size -= count;
        if (m_fill == kPacketBytes) {
            m_fill = 0;
            takePacket(m_packet.data());
        }
    }
}

void TsDemux::segmentEnds() {
    m_fill = 0;
    closePes(m_tag);
}

void TsDemux::reset() {
    segmentEnds();
    tellTags(std::nullopt);
    m_sections.clear();
    m_pmtPid = m_audioPid = m_tagPid = -1;
    m_codec = Codec::None;
    m_audio = {};
    m_tag = {};
}

void TsDemux::takePacket(const std::uint8_t* packet) {
    const bool isBroken = (packet[1] & 0x80) != 0;
    const bool isScrambled = (packet[3] & 0xC0) != 0;
    const bool hasPayload = (packet[3] & 0x10) != 0;
    if (isBroken || isScrambled || !hasPayload)
        return;
    std::size_t at = 4;
    if ((packet[3] & 0x20) != 0) // an adaptation field
        at += 1U + packet[4];
    if (at >= kPacketBytes)
        return;
    const bool isStart = (packet[1] & 0x40) != 0;
    const int pid = pidAt(packet + 1);
    const std::uint8_t* const payload = packet + at;
    const std::size_t size = kPacketBytes - at;
    if (pid == 0 || pid == m_pmtPid)
        takeSection(pid, payload, size, isStart);
    else if (pid == m_audioPid)
        takePes(m_audio, payload, size, isStart);
    else if (pid == m_tagPid)
        takePes(m_tag, payload, size, isStart);
}

void TsDemux::takeSection(int pid, const std::uint8_t* data, std::size_t size, bool isStart) {
    std::vector<std::uint8_t>& section = m_sections[pid];
    if (isStart) {
        const std::size_t skip = std::size_t{1} + data[0]; // the pointer field
        section.clear();
        if (skip >= size)
            return;
        data += skip;
        size -= skip;
    } else if (section.empty()) {
        return; // its beginning was missed
    }
    section.insert(section.end(), data, data + std::min(size, kMaxSection - section.size()));
    constexpr std::size_t kHeader = 3;
    if (section.size() < kHeader)
        return;
    const std::size_t whole = kHeader + lengthAt(section.data() + 1);
    if (section.size() < whole)
        return;
    if (pid == 0)
        takePat(section.data(), whole);
    else
        takePmt(section.data(), whole);
    m_sections.erase(pid);
}

/// Programme number and PID, four bytes each, between an 8-byte header and a 4-byte checksum.
void TsDemux::takePat(const std::uint8_t* section, std::size_t size) {
    constexpr std::size_t kHeader = 8;
    constexpr std::size_t kChecksum = 4;
    for (std::size_t at = kHeader; at + 4 + kChecksum <= size; at += 4) {
        const int programme = section[at] << 8 | section[at + 1];
        if (programme == 0)
            continue; // names the network table
        m_pmtPid = pidAt(section + at + 2);
        return;
    }
}

void TsDemux::takePmt(const std::uint8_t* section, std::size_t size) {
    constexpr std::size_t kHeader = 12;
    constexpr std::size_t kChecksum = 4;
    constexpr std::size_t kEntry = 5;
    if (size < kHeader + kChecksum)
        return;
    int audioPid = -1;
    int tagPid = -1;
    Codec codec = Codec::None;
    std::size_t at = kHeader + lengthAt(section + 10);
    for (; at + kEntry + kChecksum <= size; at += kEntry + lengthAt(section + at + 3)) {
        const int type = section[at];
        const int pid = pidAt(section + at + 1);
        const bool isPlayed = codec == Codec::Mpeg || codec == Codec::Adts;
        if (!isPlayed && (type == kAdts || type == kMpeg1Audio || type == kMpeg2Audio)) {
            codec = type == kAdts ? Codec::Adts : Codec::Mpeg;
            audioPid = pid;
        } else if (type == kMetadataPes && tagPid < 0) {
            tagPid = pid;
        } else if (codec == Codec::None && (type == kLatm || type == kAc3 || type == kEac3)) {
            codec = Codec::Unsupported;
        }
    }
    if (audioPid != m_audioPid)
        m_audio = {};
    m_audioPid = audioPid;
    m_tagPid = tagPid;
    m_codec = codec;
}

void TsDemux::takePes(Pes& pes, const std::uint8_t* data, std::size_t size, bool isStart) {
    if (isStart) {
        closePes(pes);
        pes.isOpen = true;
    }
    if (!pes.isOpen)
        return;
    if (!pes.isHeaderDone && !takeHeader(pes, data, size))
        return;
    takeBody(pes, data, size);
}

/// Section 2.4.3.6. False: more bytes are needed, or it is none.
bool TsDemux::takeHeader(Pes& pes, const std::uint8_t*& data, std::size_t& size) {
    const auto gather = [&](std::size_t wanted) {
        const std::size_t count = std::min(size, wanted - std::min(wanted, pes.header.size()));
        pes.header.insert(pes.header.end(), data, data + count);
        data += count;
        size -= count;
        return pes.header.size() >= wanted;
    };
    if (!gather(kPesFixed))
        return false;
    const std::uint8_t* h = pes.header.data();
    if (h[0] != 0 || h[1] != 0 || h[2] != 1) {
        pes.isOpen = false;
        return false;
    }
    const std::size_t optional = h[8];
    if (!gather(kPesFixed + optional))
        return false;
    h = pes.header.data();
    constexpr std::size_t kTimeBytes = 5;
    if ((h[7] & 0x80) != 0 && optional >= kTimeBytes)
        pes.time = timeAt(h + kPesFixed);
    const std::size_t length = static_cast<std::size_t>(h[4] << 8 | h[5]);
    pes.isBounded = length > 0;
    pes.bodyLeft = length > 3 + optional ? length - 3 - optional : 0;
    pes.isHeaderDone = true;
    if (&pes == &m_audio && pes.time)
        tellTags(pes.time);
    return true;
}

void TsDemux::takeBody(Pes& pes, const std::uint8_t* data, std::size_t size) {
    if (pes.isBounded) {
        size = std::min(size, pes.bodyLeft);
        pes.bodyLeft -= size;
    }
    if (&pes == &m_audio) {
        if (size > 0)
            m_sink.audio(data, size);
        return;
    }
    pes.body.insert(
        pes.body.end(), data, data + std::min(size, kMaxTag - std::min(kMaxTag, pes.body.size())));
    if (pes.isBounded && pes.bodyLeft == 0)
        closePes(pes);
}

void TsDemux::closePes(Pes& pes) {
    if (&pes == &m_tag && pes.isHeaderDone && !pes.body.empty()) {
        if (m_tags.size() >= kMaxTags)
            m_tags.erase(m_tags.begin());
        m_tags.push_back({pes.time, std::move(pes.body)});
    }
    pes = {};
}

/// Those that belong to what is heard from `time` on; no time: all.
void TsDemux::tellTags(std::optional<std::uint64_t> time) {
    while (!m_tags.empty()) {
        const TimedTag& first = m_tags.front();
        if (time && first.time && !isReached(*first.time, *time))
            return;
        const std::vector<std::uint8_t> bytes = first.bytes;
        m_tags.erase(m_tags.begin());
        m_sink.id3(bytes.data(), bytes.size());
    }
}

} // namespace BASS
