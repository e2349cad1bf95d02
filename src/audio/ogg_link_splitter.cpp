#include "audio/ogg_link_splitter.h"

#include "audio/stream_sniffer.h"

#include <algorithm>
#include <cstring>

namespace BASS {
namespace {

constexpr std::size_t kPageHeader = 27;
constexpr std::uint8_t kContinued = 1;
constexpr std::uint8_t kBeginsStream = 2;
/// Comments may carry a picture; headers beyond this are passed on but not kept.
constexpr std::size_t kMaxHeaderBytes = 1 << 20;
constexpr int kUnknownCodecHeaders = 1;
/// Frames of another format find room in it several times over.
constexpr std::size_t kForeignBytes = 16384;

const std::uint8_t* findCapture(const std::uint8_t* from, const std::uint8_t* to) {
    constexpr std::uint8_t kCapture[] = {'O', 'g', 'g', 'S'};
    return std::search(from, to, kCapture, kCapture + sizeof kCapture);
}

bool startsWith(const std::vector<std::uint8_t>& packet, const char* text, std::size_t size) {
    return packet.size() >= size && std::memcmp(packet.data(), text, size) == 0;
}

std::uint32_t serialOf(const std::vector<std::uint8_t>& header) {
    return header[14] | (static_cast<std::uint32_t>(header[15]) << 8) |
           (static_cast<std::uint32_t>(header[16]) << 16) |
           (static_cast<std::uint32_t>(header[17]) << 24);
}

/// How many header packets a link has, told by its first one.
int headerPackets(const std::vector<std::uint8_t>& first) {
    if (startsWith(first, "\x01vorbis", 7))
        return 3;
    if (startsWith(first, "OpusHead", 8))
        return 2;
    if (startsWith(first,
                   "\x7f"
                   "FLAC",
                   5) &&
        first.size() >= 9) {
        const int more = (first[7] << 8) | first[8]; // 0: not told; the comments always follow
        return 1 + std::max(more, 1);
    }
    return kUnknownCodecHeaders;
}

/// Where the comment block begins in the second packet; 0: this is no comment packet.
std::size_t commentOffset(const std::vector<std::uint8_t>& packet) {
    constexpr int kFlacComment = 4;
    if (startsWith(packet, "\x03vorbis", 7))
        return 7;
    if (startsWith(packet, "OpusTags", 8))
        return 8;
    if (packet.size() > 4 && (packet[0] & 0x7F) == kFlacComment)
        return 4;
    return 0;
}

} // namespace

void OggLinkSplitter::feed(const std::uint8_t* data, std::size_t size) {
    const std::uint8_t* const end = data + size;
    while (data < end) {
        if (m_state == State::Body) {
            const std::size_t n = std::min(m_bodyLeft, static_cast<std::size_t>(end - data));
            if (m_isInHeaders)
                m_page.insert(m_page.end(), data, data + n);
            m_sink.bytes(data, n);
            data += n;
            m_bodyLeft -= n;
            if (m_bodyLeft == 0)
                pageEnds();
            continue;
        }
        const std::size_t wanted = m_header.size() < kPageHeader
                                       ? kPageHeader - m_header.size()
                                       : kPageHeader + m_header[26] - m_header.size();
        const std::size_t n = std::min(wanted, static_cast<std::size_t>(end - data));
        m_header.insert(m_header.end(), data, data + n);
        data += n;
        takeHeader();
    }
}

void OggLinkSplitter::finish() {
    emitRubbish();
    emitPending();
}

void OggLinkSplitter::emitPending() {
    if (!m_header.empty())
        m_sink.bytes(m_header.data(), m_header.size());
    m_header.clear();
}

/// Called whenever m_header has grown: resynchronises, or goes on to the page's body.
void OggLinkSplitter::takeHeader() {
    const std::size_t known = std::min<std::size_t>(m_header.size(), 4);
    const bool isPage = std::memcmp(m_header.data(), "OggS", known) == 0 &&
                        (m_header.size() < 5 || m_header[4] == 0);
    if (!isPage) { // rubbish between pages: hand it on up to the next capture pattern
        const auto* first = m_header.data() + 1;
        const auto* last = m_header.data() + m_header.size();
        const auto* next = findCapture(first, last);
        if (next == last)
            next = std::max(first, last - 3);
        const auto gone = static_cast<std::size_t>(next - m_header.data());
        takeRubbish(m_header.data(), gone);
        m_header.erase(m_header.begin(), m_header.begin() + static_cast<std::ptrdiff_t>(gone));
        if (!m_header.empty() && m_header.size() >= 4)
            takeHeader();
        return;
    }
    if (m_header.size() < kPageHeader || m_header.size() < kPageHeader + m_header[26])
        return;

    emitRubbish();
    m_isForeign = false;
    const bool isFirst = (m_header[5] & kBeginsStream) != 0;
    if (isFirst && !m_wasFirstPage)
        beginLink();
    m_wasFirstPage = isFirst;
    m_bodyLeft = 0;
    for (std::size_t n = kPageHeader; n < m_header.size(); ++n)
        m_bodyLeft += m_header[n];
    if (m_isInHeaders)
        m_page = m_header;
    emitPending();
    m_state = State::Body;
    if (m_bodyLeft == 0)
        pageEnds();
}

void OggLinkSplitter::takeRubbish(const std::uint8_t* data, std::size_t size) {
    if (m_isForeign) {
        m_sink.bytes(data, size);
        return;
    }
    m_rubbish.insert(m_rubbish.end(), data, data + size);
    if (m_rubbish.size() < kForeignBytes)
        return;
    const SniffResult sniffed = sniffStream(m_rubbish.data(), m_rubbish.size(), false, {});
    m_isForeign = sniffed.verdict == SniffResult::Verdict::Found ||
                  sniffed.verdict == SniffResult::Verdict::SkipTag;
    if (m_isForeign)
        m_sink.linkBegins();
    emitRubbish();
}

void OggLinkSplitter::emitRubbish() {
    if (!m_rubbish.empty())
        m_sink.bytes(m_rubbish.data(), m_rubbish.size());
    m_rubbish.clear();
}

void OggLinkSplitter::beginLink() {
    m_serial = serialOf(m_header);
    m_isInHeaders = true;
    m_packetNumber = 0;
    m_headerPackets = 0;
    m_hasComments = false;
    m_packet.clear();
    m_headers.clear();
    m_sink.linkBegins();
}

void OggLinkSplitter::pageEnds() {
    m_state = State::Header;
    if (!m_isInHeaders)
        return;
    m_headers.insert(m_headers.end(), m_page.begin(), m_page.end());
    if (serialOf(m_page) == m_serial)
        readPackets();
    m_page.clear();
    if (m_hasComments) {
        m_hasComments = false;
        m_sink.comments(m_comments.data(), m_comments.size());
    }
    const bool isComplete = m_headerPackets > 0 && m_packetNumber >= m_headerPackets;
    if (isComplete || m_headers.size() > kMaxHeaderBytes) {
        m_isInHeaders = false;
        if (isComplete)
            m_sink.headersComplete(m_headers);
        m_headers.clear();
        m_packet.clear();
        m_comments.clear();
    }
}

void OggLinkSplitter::readPackets() {
    const std::size_t segments = m_page[26];
    std::size_t at = kPageHeader + segments;
    if ((m_page[5] & kContinued) == 0)
        m_packet.clear();
    for (std::size_t n = 0; n < segments; ++n) {
        const std::size_t length = m_page[kPageHeader + n];
        const auto from = m_page.begin() + static_cast<std::ptrdiff_t>(at);
        m_packet.insert(m_packet.end(), from, from + static_cast<std::ptrdiff_t>(length));
        at += length;
        if (length < 255)
            packetEnds();
    }
}

void OggLinkSplitter::packetEnds() {
    ++m_packetNumber;
    if (m_packetNumber == 1) {
        m_headerPackets = headerPackets(m_packet);
    } else if (const std::size_t offset = commentOffset(m_packet);
               offset > 0 && m_packetNumber <= m_headerPackets) {
        m_comments.assign(m_packet.begin() + static_cast<std::ptrdiff_t>(offset), m_packet.end());
        m_hasComments = true;
    }
    m_packet.clear();
}

} // namespace BASS
