#include "recording/stream_format.h"

#include "audio/frame_header.h"
#include "recording/flac_splitter.h"
#include "recording/frame_splitter.h"
#include "recording/ogg_link.h"
#include "recording/ogg_splitter.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace BASS {
namespace {

constexpr std::size_t kMagicBytes = 12;
constexpr std::size_t kGiveUpBytes = 65536;
constexpr std::size_t kMaxTagBytes = 4 * 1024 * 1024; ///< pictures in tags are large

bool startsWith(const std::uint8_t* data, const char* magic) {
    return std::memcmp(data, magic, std::strlen(magic)) == 0;
}

/// The first page of a stream carries the first packet alone (RFC 3533, section 6); a connection
/// that begins between headers says nothing of the codec.
StreamFormat oggFormat(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kSegmentsAt = 26;
    constexpr std::uint8_t kIsFirst = 2;
    const std::size_t body = kSegmentsAt + 1 + data[kSegmentsAt];
    if (body >= size || (data[5] & kIsFirst) == 0)
        return StreamFormat::Ogg;
    const QByteArray packet(reinterpret_cast<const char*>(data) + body,
                            static_cast<int>(size - body));
    return oggCodec(packet) == OggCodec::Unknown ? StreamFormat::OggOther : StreamFormat::Ogg;
}

std::optional<StreamFormat> byMagic(const std::uint8_t* data, std::size_t size) {
    if (startsWith(data, "OggS"))
        return oggFormat(data, size);
    if (startsWith(data, "fLaC"))
        return StreamFormat::Flac;
    if (startsWith(data + 4, "ftyp"))
        return StreamFormat::Mp4;
    if (startsWith(data, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"))
        return StreamFormat::Asf;
    return std::nullopt;
}

/// Bytes of an ID3v2 tag with its header (ID3v2.4, section 3.1); 0: none.
std::size_t id3Bytes(const std::uint8_t* data) {
    constexpr std::size_t kHeader = 10;
    if (!startsWith(data, "ID3"))
        return 0;
    std::size_t size = 0;
    for (int n = 6; n < 10; ++n)
        size = (size << 7) | (data[n] & 0x7FU);
    return size + kHeader;
}

/// Headers that follow each other from `at` on; `isOpen`: the last one's frame passes the end.
int chainLength(FrameHeadParser parser,
                const std::uint8_t* data,
                std::size_t size,
                std::size_t at,
                bool& isOpen) {
    int count = 0;
    std::optional<FrameHead> first;
    isOpen = false;
    while (count < 3) {
        if (at >= size) {
            isOpen = true;
            break;
        }
        const auto head = parser(data + at, size - at);
        if (!head || (first && head->stream != first->stream)) {
            isOpen = size - at < kAdtsHeaderBytes;
            break;
        }
        first = head;
        at += head->bytes;
        ++count;
    }
    return count;
}

std::optional<StreamFormat> byFrames(const std::uint8_t* data, std::size_t size, bool isEnd) {
    constexpr int kWanted = 3;
    for (std::size_t at = 0; at + kAdtsHeaderBytes <= size; ++at) {
        if (data[at] != 0xFF)
            continue;
        for (const bool isMpeg : {true, false}) {
            bool isOpen = false;
            const int count = chainLength(isMpeg ? mpegHead : adtsHead, data, size, at, isOpen);
            if (count == kWanted || (isEnd && isOpen && count == kWanted - 1))
                return isMpeg ? StreamFormat::Mpeg : StreamFormat::Adts;
        }
    }
    return std::nullopt;
}

/// A stream of Ogg that was entered within a page or a link: the first link that begins there.
std::optional<StreamFormat> byLaterPage(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kFlags = 5;
    constexpr std::uint8_t kBeginsStream = 2;
    constexpr std::size_t kMost = 27 + 255 + 8; // a page's header and a codec's name
    constexpr std::string_view kCapture("OggS\0", 5);
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (std::size_t at = text.find(kCapture); at != std::string_view::npos && size - at >= kMost;
         at = text.find(kCapture, at + 1)) {
        if ((data[at + kFlags] & kBeginsStream) != 0 &&
            oggFormat(data + at, size - at) == StreamFormat::Ogg)
            return StreamFormat::Ogg;
    }
    return std::nullopt;
}

std::optional<StreamFormat> detect(const std::uint8_t* data, std::size_t size, bool isEnd) {
    constexpr std::size_t kOggNeeds = 27 + 255 + 8; // a page's header and a codec's name
    while (size >= kMagicBytes) {
        if (startsWith(data, "OggS") && size < kOggNeeds && !isEnd)
            return std::nullopt;
        if (const auto format = byMagic(data, size))
            return format;
        const std::size_t tag = id3Bytes(data);
        if (tag > size && tag < kMaxTagBytes && !isEnd)
            return std::nullopt;
        if (tag == 0 || tag + kMagicBytes > size)
            break;
        data += tag; // any number of them, one behind the other
        size -= tag;
    }
    if (const auto format = byFrames(data, size, isEnd))
        return format;
    if (const auto format = byLaterPage(data, size))
        return format;
    return isEnd || size >= kGiveUpBytes ? std::optional(StreamFormat::Unknown) : std::nullopt;
}

/// What is not understood: bytes as they come.
class RawSplitter final : public StreamParser {
  public:
    RawSplitter(StreamFormat format, qint64 position)
        : m_stream(static_cast<quint32>(format)), m_position(position) {}

    void push(const char* data, qsizetype size, FrameList& frames) override {
        AudioFrame frame;
        frame.bytes = QByteArray(data, static_cast<int>(size));
        frame.position = m_position;
        frame.stream = m_stream;
        m_position += size;
        frames.push_back(std::move(frame));
    }
    void finish(FrameList&) override {}
    [[nodiscard]] qint64 droppedBytes() const override { return 0; }

  private:
    quint32 m_stream;
    qint64 m_position;
};

} // namespace

std::optional<StreamFormat> detectFormat(const QByteArray& bytes, bool isEnd) {
    return detect(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                  static_cast<std::size_t>(bytes.size()),
                  isEnd);
}

std::unique_ptr<StreamParser> makeStreamParser(StreamFormat format, qint64 position) {
    if (format == StreamFormat::Mpeg)
        return std::make_unique<FrameSplitter>(mpegHead, kMpegHeaderBytes, position);
    if (format == StreamFormat::Ogg)
        return std::make_unique<OggSplitter>(position);
    if (format == StreamFormat::Flac)
        return std::make_unique<FlacSplitter>(position);
    if (format == StreamFormat::Adts)
        return std::make_unique<FrameSplitter>(adtsHead, kAdtsHeaderBytes, position);
    return std::make_unique<RawSplitter>(format, position);
}

QString streamExtension(StreamFormat format, const AudioFrame& frame) {
    const bool isFlacInOgg = frame.link && frame.link->codec == OggCodec::Flac;
    switch (format) {
    case StreamFormat::Adts:
    case StreamFormat::Mp4:
        return QStringLiteral("aac");
    case StreamFormat::Ogg:
    case StreamFormat::OggOther:
        return isFlacInOgg ? QStringLiteral("oga") : QStringLiteral("ogg");
    case StreamFormat::Flac:
        return QStringLiteral("flac");
    case StreamFormat::Asf:
        return QStringLiteral("wma");
    case StreamFormat::Mpeg:
    case StreamFormat::Unknown:
        break;
    }
    return QStringLiteral("mp3");
}

} // namespace BASS
