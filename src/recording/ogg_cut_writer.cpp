#include "recording/ogg_cut_writer.h"

#include "base/check.h"
#include "recording/flac_frame.h"
#include "recording/ogg_link.h"

#include <ogg/ogg.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace BASS {
namespace {

constexpr qint64 kOpusPreRoll = 3840; ///< 80 ms at 48 kHz (RFC 7845, section 4.6)
constexpr int kPreSkipAt = 10;        ///< in "OpusHead", two bytes, low one first
constexpr int kPagesPerSecond = 2;
constexpr std::size_t kPageHeader = 27; ///< without its table of packets
constexpr unsigned char kEndMark = 4;

QByteArray withPreSkip(QByteArray head, qint64 samples) {
    head[kPreSkipAt] = static_cast<char>(samples & 0xFF);
    head[kPreSkipAt + 1] = static_cast<char>((samples >> 8) & 0xFF);
    return head;
}

qint64 preSkip(const QByteArray& head) {
    if (head.size() < kPreSkipAt + 2)
        return 0;
    return static_cast<std::uint8_t>(head[kPreSkipAt]) |
           (static_cast<std::uint8_t>(head[kPreSkipAt + 1]) << 8);
}

/// The packets before the cut that a decoder needs to be right from the first one on.
FrameHistory oggPreRoll(const FrameHistory& before, const OggLink& link) {
    FrameHistory result;
    qint64 samples = 0;
    for (auto frame = before.rbegin(); frame != before.rend(); ++frame) {
        const bool isEnough = link.codec == OggCodec::Vorbis ? !result.empty()
                              : link.codec == OggCodec::Opus ? samples >= kOpusPreRoll
                                                             : true;
        if (isEnough || frame->link.get() != &link)
            break;
        samples += frame->samples;
        result.push_front(*frame);
    }
    return result;
}

} // namespace

struct OggCutWriter::Private {
    Private(ByteSink& target, const FrameHistory& frames, quint32 firstSerial)
        : sink(target), before(frames), serial(firstSerial) {}

    void begin(const AudioFrame& first);
    void end();
    void writeHeaders(qint64 skip);
    void take(const AudioFrame& frame, qint64 samples);
    void writeHeld(bool isLast);
    void writeEndPage();
    void packetIn(const QByteArray& bytes, qint64 granulePosition, bool isLast);
    void pagesOut(bool isAll);
    void put(const ogg_page& page);

    ByteSink& sink;
    FrameHistory before;
    quint32 serial;
    std::shared_ptr<const OggLink> link;
    ogg_stream_state stream{};
    ogg_int64_t packetNumber = 0;
    qint64 granule = 0; ///< behind the held packet
    qint64 paged = 0;   ///< granule at the last page
    qint64 skipped = 0; ///< samples of this link that are not heard
    double seconds = 0; ///< of the links before
    bool isFirstPacket = true;
    bool hasEnded = false;          ///< the end mark is written
    std::optional<AudioFrame> held; ///< may be the last packet, which gets the end mark
    /// Pages of headers wait for audio: a file of them alone would not play after a crash.
    QByteArray headerPages;
    bool isInHeaders = false;
};

OggCutWriter::OggCutWriter(ByteSink& sink, const FrameHistory& before, quint32 serial)
    : m_private(std::make_unique<Private>(sink, before, serial)) {}

OggCutWriter::~OggCutWriter() {
    ogg_stream_clear(&m_private->stream);
}

void OggCutWriter::write(const AudioFrame& frame) {
    // a server that goes on behind its own end mark goes on in a stream of its own
    if (frame.link != m_private->link || m_private->hasEnded) {
        m_private->end();
        m_private->begin(frame);
    }
    m_private->take(frame, frame.samples);
}

void OggCutWriter::takeBack(const FrameHistory&) {
    WL_CHECK(false);
}

void OggCutWriter::Private::begin(const AudioFrame& first) {
    link = first.link;
    ogg_stream_clear(&stream);
    ogg_stream_init(&stream, static_cast<int>(serial++));
    packetNumber = 0;
    granule = paged = skipped = 0;
    isFirstPacket = true;
    hasEnded = false;

    const FrameHistory lead = first.followsGap ? FrameHistory() : oggPreRoll(before, *link);
    before.clear();
    if (link->codec == OggCodec::Opus) {
        qint64 samples = 0;
        for (const AudioFrame& frame : lead)
            samples += frame.samples;
        skipped = first.isLinkStart ? preSkip(link->headers.front())
                  : lead.empty()    ? kOpusPreRoll
                                    : samples;
    }
    writeHeaders(skipped);
    for (const AudioFrame& frame : lead)
        take(frame, frame.samples);
}

void OggCutWriter::Private::writeHeaders(qint64 skip) {
    isInHeaders = true;
    for (std::size_t n = 0; n < link->headers.size(); ++n) {
        QByteArray header = link->headers[n];
        if (n == 0 && link->codec == OggCodec::Opus)
            header = withPreSkip(header, skip);
        if (n == 0 && link->codec == OggCodec::Flac)
            clearFlacTotals(header, kFlacInOggLead);
        packetIn(header, 0, false);
        if (n == 0)
            pagesOut(true); // the first page holds the first packet alone
    }
    pagesOut(true); // audio begins on a fresh page
    isInHeaders = false;
}

void OggCutWriter::Private::take(const AudioFrame& frame, qint64 samples) {
    writeHeld(false);
    // a Vorbis decoder gives nothing for the first packet of a stream
    const bool isSilent = isFirstPacket && link->codec == OggCodec::Vorbis;
    granule += isSilent ? 0 : samples;
    isFirstPacket = false;
    held = frame;
    pagesOut(granule - paged > link->sampleRate / kPagesPerSecond);
}

void OggCutWriter::Private::end() {
    if (!link)
        return;
    writeHeld(true);
    pagesOut(true);
    if (!hasEnded && headerPages.isEmpty())
        writeEndPage();
    if (link->sampleRate > 0)
        seconds += static_cast<double>(std::max<qint64>(0, granule - skipped)) / link->sampleRate;
    link.reset();
}

void OggCutWriter::Private::writeHeld(bool isLast) {
    if (!held)
        return;
    if (isLast)
        granule -= std::min(held->endTrim, granule);
    packetIn(held->bytes, granule, isLast);
    hasEnded = isLast;
    held.reset();
}

/// The end mark of a stream whose last packet is written already: a page without one, which
/// completes no packet and so has no granule position (RFC 3533, section 6).
void OggCutWriter::Private::writeEndPage() {
    std::array<unsigned char, kPageHeader> header{'O', 'g', 'g', 'S', 0, kEndMark};
    const auto putNumber = [&header](std::size_t at, std::size_t bytes, std::uint64_t value) {
        for (std::size_t n = 0; n < bytes; ++n)
            header[at + n] = static_cast<unsigned char>(value >> (8 * n));
    };
    putNumber(6, 8, ~std::uint64_t{0});
    putNumber(14, 4, static_cast<std::uint32_t>(stream.serialno));
    putNumber(18, 4, static_cast<std::uint64_t>(stream.pageno));
    ogg_page page{header.data(), static_cast<long>(header.size()), nullptr, 0};
    ogg_page_checksum_set(&page);
    put(page);
    hasEnded = true;
}

void OggCutWriter::Private::packetIn(const QByteArray& bytes, qint64 position, bool isLast) {
    ogg_packet packet{};
    packet.packet =
        const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(bytes.constData()));
    packet.bytes = bytes.size();
    packet.b_o_s = packetNumber == 0 ? 1 : 0;
    packet.e_o_s = isLast ? 1 : 0;
    packet.granulepos = position;
    packet.packetno = packetNumber++;
    ogg_stream_packetin(&stream, &packet); // copies the bytes
}

void OggCutWriter::Private::pagesOut(bool isAll) {
    ogg_page page{};
    while ((isAll ? ogg_stream_flush(&stream, &page) : ogg_stream_pageout(&stream, &page)) != 0)
        put(page);
}

void OggCutWriter::Private::put(const ogg_page& page) {
    QByteArray bytes(reinterpret_cast<const char*>(page.header), static_cast<int>(page.header_len));
    bytes.append(reinterpret_cast<const char*>(page.body), static_cast<int>(page.body_len));
    if (isInHeaders) {
        headerPages += bytes;
        return;
    }
    bytes.prepend(std::exchange(headerPages, {}));
    sink.append(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                static_cast<std::size_t>(bytes.size()));
    paged = std::max<qint64>(paged, ogg_page_granulepos(&page));
}

void OggCutWriter::flush() {
    Private& d = *m_private;
    if (!d.link || !(d.headerPages.isEmpty() || d.granule > d.skipped))
        return;
    d.writeHeld(d.held && d.held->isLinkEnd);
    d.pagesOut(true);
}

void OggCutWriter::finish() {
    m_private->end();
}

double OggCutWriter::seconds() const {
    const Private& d = *m_private;
    if (!d.link || d.link->sampleRate <= 0)
        return d.seconds;
    return d.seconds +
           static_cast<double>(std::max<qint64>(0, d.granule - d.skipped)) / d.link->sampleRate;
}

} // namespace BASS
