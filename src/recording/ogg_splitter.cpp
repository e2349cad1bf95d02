#include "recording/ogg_splitter.h"

#include "base/log.h"
#include "recording/ogg_packets.h"

#include <ogg/ogg.h>

#include <cstring>
#include <utility>

namespace BASS {
namespace {

constexpr std::size_t kMaxHeaders = 64;

QByteArray packetBytes(const ogg_packet& packet) {
    return QByteArray(reinterpret_cast<const char*>(packet.packet), static_cast<int>(packet.bytes));
}

quint32 streamNumber(const OggLink& link) {
    return static_cast<quint32>((link.sampleRate * 10 + link.channels) * 10 +
                                static_cast<int>(link.codec));
}

} // namespace

struct OggSplitter::Private {
    explicit Private(qint64 start) : position(start) { ogg_sync_init(&sync); }
    ~Private() {
        ogg_sync_clear(&sync);
        ogg_stream_clear(&stream);
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    void step(int count);
    void takePage(ogg_page& page, FrameList& frames);
    bool isFirstPage(ogg_page& page);
    void takeHeader(const ogg_packet& packet);
    void takePacket(const ogg_packet& packet, FrameList& frames);
    void endPage(ogg_page& page, FrameList& frames, std::size_t first);

    ogg_sync_state sync{};
    ogg_stream_state stream{};
    qint64 position; ///< of the next byte that libogg has not given back
    qint64 pagePosition = 0;
    qint64 dropped = 0;
    QByteArray foreign; ///< dropped since the last page

    bool hasStream = false;
    std::unique_ptr<OggLink> opening; ///< while its headers come
    std::shared_ptr<const OggLink> link;
    std::unique_ptr<OggPacketLengths> lengths;
    qint64 granule = -1; ///< at the end of the page before; -1: not known
    bool hasGap = false;
    bool isLinkStart = false;
};

OggSplitter::OggSplitter(qint64 position) : m_private(std::make_unique<Private>(position)) {}

OggSplitter::~OggSplitter() = default;

qint64 OggSplitter::droppedBytes() const {
    return m_private->dropped;
}

void OggSplitter::push(const char* data, qsizetype size, FrameList& frames) {
    Private& d = *m_private;
    char* const buffer = ogg_sync_buffer(&d.sync, static_cast<long>(size));
    if (buffer == nullptr || size <= 0)
        return;
    std::memcpy(buffer, data, static_cast<std::size_t>(size));
    ogg_sync_wrote(&d.sync, static_cast<long>(size));
    ogg_page page{};
    for (;;) {
        const long count = ogg_sync_pageseek(&d.sync, &page);
        if (count == 0)
            return;
        if (count < 0) {
            d.step(static_cast<int>(-count));
            continue;
        }
        d.foreign.clear();
        d.pagePosition = d.position;
        d.position += count;
        d.takePage(page, frames);
    }
}

/// Over what is no page; libogg keeps it until more is asked for.
void OggSplitter::Private::step(int count) {
    foreign.append(reinterpret_cast<const char*>(sync.data) + sync.returned - count, count);
    position += count;
    dropped += count;
}

QByteArray OggSplitter::takeForeign(bool isEnd) {
    Private& d = *m_private;
    if (d.foreign.size() < (isEnd ? kForeignBytesAtEnd : kForeignBytes))
        return {};
    const char* const rest = reinterpret_cast<const char*>(d.sync.data) + d.sync.returned;
    return std::exchange(d.foreign, {}) + QByteArray(rest, d.sync.fill - d.sync.returned);
}

/// True where the page begins a link that is taken.
bool OggSplitter::Private::isFirstPage(ogg_page& page) {
    const QByteArray packet(reinterpret_cast<const char*>(page.body),
                            static_cast<int>(page.body_len));
    const OggCodec codec = oggCodec(packet);
    // first pages stand together: a second one right behind the first is multiplexed with it
    const bool isMultiplexed = opening && opening->headers.size() <= 1;
    if (codec == OggCodec::Unknown || isMultiplexed)
        return false;
    ogg_stream_clear(&stream);
    ogg_stream_init(&stream, ogg_page_serialno(&page));
    hasStream = true;
    opening = std::make_unique<OggLink>();
    opening->codec = codec;
    link.reset();
    lengths.reset();
    granule = 0;
    hasGap = false;
    return true;
}

void OggSplitter::Private::takePage(ogg_page& page, FrameList& frames) {
    const bool isFirst = ogg_page_bos(&page) != 0 && isFirstPage(page);
    if (!hasStream || ogg_page_serialno(&page) != stream.serialno ||
        (ogg_page_bos(&page) != 0 && !isFirst))
        return;
    if (ogg_stream_pagein(&stream, &page) != 0)
        return;
    const std::size_t first = frames.size();
    ogg_packet packet{};
    for (;;) {
        const int result = ogg_stream_packetout(&stream, &packet);
        if (result == 0)
            break;
        if (result < 0) {
            hasGap = true;
            granule = -1;
        } else if (opening) {
            takeHeader(packet);
        } else {
            takePacket(packet, frames);
        }
    }
    endPage(page, frames, first);
}

void OggSplitter::Private::takeHeader(const ogg_packet& packet) {
    opening->headers.push_back(packetBytes(packet));
    if (areOggHeadersComplete(opening->codec, opening->headers)) {
        readOggFormat(*opening);
        link = std::move(opening);
        lengths = std::make_unique<OggPacketLengths>(*link);
        isLinkStart = true;
    } else if (opening->headers.size() > kMaxHeaders) {
        qCWarning(lcRecording) << "OggSplitter::takeHeader headers without end";
        opening.reset();
        hasStream = false;
    }
}

void OggSplitter::Private::takePacket(const ogg_packet& packet, FrameList& frames) {
    if (!link || packet.bytes == 0)
        return;
    AudioFrame frame;
    frame.bytes = packetBytes(packet);
    // a header that comes once more is no audio
    if (link->codec == OggCodec::Vorbis && (frame.bytes[0] & 1) != 0)
        return;
    frame.position = pagePosition;
    frame.samples = lengths->samples(frame.bytes);
    frame.sampleRate = link->sampleRate;
    frame.stream = streamNumber(*link);
    frame.isLinkStart = isLinkStart && !hasGap;
    frame.followsGap = hasGap || isLinkStart;
    frame.link = link;
    hasGap = false;
    isLinkStart = false;
    frames.push_back(std::move(frame));
}

/// The last page of a link may end before its last packet does (RFC 3533 leaves it to the codec;
/// Vorbis I, appendix A.2, and RFC 7845, section 4.4).
void OggSplitter::Private::endPage(ogg_page& page, FrameList& frames, std::size_t first) {
    const bool isLast = ogg_page_eos(&page) != 0 && frames.size() > first;
    if (isLast)
        frames.back().isLinkEnd = true;
    const qint64 end = ogg_page_granulepos(&page);
    if (end < 0)
        return;
    if (granule >= 0 && isLast) {
        qint64 samples = 0;
        for (std::size_t n = first; n < frames.size(); ++n)
            samples += frames[n].samples;
        const qint64 surplus = granule + samples - end;
        if (surplus > 0 && surplus <= samples)
            frames.back().endTrim = surplus;
    }
    granule = end;
}

} // namespace BASS
