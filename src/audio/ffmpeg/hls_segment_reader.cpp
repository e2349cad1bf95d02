#include "audio/ffmpeg/hls_segment_reader.h"

#include "audio/ffmpeg/fragment_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

namespace BASS {
namespace {

constexpr std::size_t kIdentifyBytes = 12;
constexpr std::size_t kMostTags = 4U * 1024U * 1024U;      // pictures are large
constexpr std::size_t kMostFragment = 64U * 1024U * 1024U; // a minute of anything

bool isBox(const std::uint8_t* data) {
    constexpr std::array<std::string_view, 8> kBoxes{
        "ftyp", "styp", "moov", "moof", "sidx", "emsg", "prft", "free"};
    const std::string_view name(reinterpret_cast<const char*>(data) + 4, 4);
    return std::find(kBoxes.begin(), kBoxes.end(), name) != kBoxes.end();
}

std::uint32_t number(const std::uint8_t* d) {
    return static_cast<std::uint32_t>(d[0]) << 24 | static_cast<std::uint32_t>(d[1]) << 16 |
           static_cast<std::uint32_t>(d[2]) << 8 | d[3];
}

} // namespace

void HlsSegmentReader::begin(const std::vector<std::uint8_t>& map) {
    m_kind = Kind::Unknown;
    m_codec = FramedCodec::None;
    m_held.clear();
    m_map = map;
    m_hasAudio = false;
    if (map.size() < kIdentifyBytes || isBox(map.data()))
        return;
    m_map.clear(); // tables of a transport stream simply come first
    feed(map.data(), map.size());
}

void HlsSegmentReader::feed(const std::uint8_t* data, std::size_t size) {
    if (m_kind == Kind::Transport) {
        m_ts.feed(data, size);
    } else if (m_kind == Kind::Packed && m_codec != FramedCodec::None) {
        handOn(data, size);
    } else if (m_kind != Kind::Rubbish) {
        m_held.insert(m_held.end(), data, data + size);
        if (m_held.size() > kMostFragment)
            m_kind = Kind::Rubbish;
        if (m_kind == Kind::Unknown)
            identify(false);
        else if (m_kind == Kind::Packed)
            packedBegins(false);
    }
}

void HlsSegmentReader::identify(bool isEnd) {
    if (m_held.size() < kIdentifyBytes && !isEnd)
        return;
    if (m_held.size() < kIdentifyBytes) {
        m_kind = Kind::Rubbish;
        return;
    }
    constexpr std::uint8_t kTransportSync = 0x47;
    const std::uint8_t* const data = m_held.data();
    if (isBox(data)) {
        m_kind = Kind::Fragment;
    } else if (data[0] == kTransportSync) {
        m_kind = Kind::Transport;
        const std::vector<std::uint8_t> bytes = std::exchange(m_held, {});
        m_ts.feed(bytes.data(), bytes.size());
    } else {
        m_kind = Kind::Packed;
        packedBegins(isEnd);
    }
}

/// Frames follow behind the tags.
void HlsSegmentReader::packedBegins(bool isEnd) {
    if (!takeTags() || m_held.size() < 2) {
        if (isEnd || m_held.size() > kMostTags)
            m_kind = Kind::Rubbish;
        return;
    }
    const std::uint8_t first = m_held[0];
    const std::uint8_t second = m_held[1];
    if (first == 0xFF && (second & 0xF6) == 0xF0) {
        setCodec(FramedCodec::Adts);
    } else if (first == 0xFF && (second & 0xE0) == 0xE0) {
        setCodec(FramedCodec::Mpeg);
    } else {
        const bool isAc3 = first == 0x0B && second == 0x77;
        m_codec = isAc3 ? FramedCodec::Unsupported : FramedCodec::None;
        m_kind = Kind::Rubbish;
        return;
    }
    const std::vector<std::uint8_t> bytes = std::exchange(m_held, {});
    handOn(bytes.data(), bytes.size());
}

/// Takes every whole tag in front. False: the last one is not complete.
bool HlsSegmentReader::takeTags() {
    for (;;) {
        const bool mayBeTag = !m_held.empty() && m_held[0] == 'I';
        if (mayBeTag && m_held.size() < kId3HeaderBytes)
            return false;
        const std::size_t bytes = id3TagBytes(m_held.data(), m_held.size());
        if (bytes == 0)
            return true;
        if (bytes > m_held.size())
            return false;
        id3(m_held.data(), bytes);
        m_held.erase(m_held.begin(), m_held.begin() + static_cast<std::ptrdiff_t>(bytes));
    }
}

bool HlsSegmentReader::end() {
    if (m_kind == Kind::Unknown)
        identify(true);
    if (m_kind == Kind::Packed && m_codec == FramedCodec::None)
        packedBegins(true);
    if (m_kind == Kind::Transport) {
        m_ts.segmentEnds();
        if (!m_hasAudio && m_ts.codec() == TsDemux::Codec::Unsupported)
            m_codec = FramedCodec::Unsupported;
    }
    if (m_kind == Kind::Fragment)
        endFragment();
    m_held.clear();
    return m_hasAudio;
}

void HlsSegmentReader::endFragment() {
    tellMessages();
    std::vector<std::uint8_t> bytes = std::move(m_map);
    bytes.insert(bytes.end(), m_held.begin(), m_held.end());
    const FragmentAudio audio = readFragment(bytes);
    switch (audio.codec) {
    case FramedCodec::Mpeg:
        setCodec(FramedCodec::Mpeg);
        break;
    case FramedCodec::Adts:
        setCodec(FramedCodec::Adts);
        break;
    case FramedCodec::Flac:
        if (m_stream != FramedCodec::Flac)
            bytes = audio.head;
        else
            bytes.clear();
        setCodec(FramedCodec::Flac);
        handOn(bytes.data(), bytes.size());
        break;
    case FramedCodec::Unsupported:
        m_codec = FramedCodec::Unsupported;
        return;
    case FramedCodec::None:
        return;
    }
    handOn(audio.bytes.data(), audio.bytes.size());
}

/// Event messages that carry an ID3 tag (ISO/IEC 23009-1, section 5.10.3.3): it stands at their
/// end.
void HlsSegmentReader::tellMessages() {
    constexpr std::size_t kBoxHeader = 8;
    std::size_t at = 0;
    while (m_held.size() - at >= kBoxHeader) {
        const std::size_t size = number(m_held.data() + at);
        if (size < kBoxHeader || size > m_held.size() - at)
            return;
        const auto from = m_held.begin() + static_cast<std::ptrdiff_t>(at);
        const auto to = from + static_cast<std::ptrdiff_t>(size);
        if (std::memcmp(m_held.data() + at + 4, "emsg", 4) == 0) {
            constexpr std::string_view kTag = "ID3"; // the scheme's name ends like that, too
            auto tag = std::search(from + kBoxHeader, to, kTag.begin(), kTag.end());
            for (; tag != to; tag = std::search(tag + 1, to, kTag.begin(), kTag.end()))
                id3(&*tag, static_cast<std::size_t>(to - tag));
        }
        at += size;
    }
}

void HlsSegmentReader::reset() {
    m_ts.reset();
    m_stream = FramedCodec::None;
}

void HlsSegmentReader::audio(const std::uint8_t* data, std::size_t size) {
    if (!m_hasAudio)
        setCodec(m_ts.codec() == TsDemux::Codec::Adts ? FramedCodec::Adts : FramedCodec::Mpeg);
    handOn(data, size);
}

void HlsSegmentReader::id3(const std::uint8_t* data, std::size_t size) {
    const auto texts = parseId3Tag(data, size);
    if (texts && !texts->isEmpty())
        m_sink.texts(*texts);
}

void HlsSegmentReader::setCodec(FramedCodec codec) {
    m_codec = codec;
    if (m_stream == codec)
        return;
    m_stream = codec;
    m_sink.streamBegins(codec);
}

void HlsSegmentReader::handOn(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return;
    m_hasAudio = true;
    m_sink.audio(data, size);
}

} // namespace BASS
