#include "audio/hls/hls_playlist.h"

#include "audio/ascii_text.h"

#include <algorithm>
#include <cstdlib>

namespace BASS {
namespace {

constexpr std::string_view kMark = "#EXTM3U";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kMaxVariants = 256;

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// Finite and not negative, whatever is written there.
double positiveNumber(std::string_view text) {
    const double value = std::strtod(std::string(text.substr(0, 32)).c_str(), nullptr);
    constexpr double kMost = 86400.0 * 365;
    return value > 0.0 && value < kMost ? value : 0.0;
}

std::uint64_t wholeNumber(std::string_view text) {
    constexpr std::size_t kMostDigits = 18;
    std::uint64_t value = 0;
    for (const char c : trimmed(text).substr(0, kMostDigits)) {
        if (c < '0' || c > '9')
            break;
        value = value * 10 + static_cast<std::uint64_t>(c - '0');
    }
    return value;
}

/// "length[@offset]"; without an offset it begins where the one before it ended.
HlsResource byteRange(std::string_view text, std::uint64_t next) {
    HlsResource result;
    const std::size_t at = text.find('@');
    result.length = wholeNumber(text.substr(0, at));
    result.offset = at == std::string_view::npos ? next : wholeNumber(text.substr(at + 1));
    return result;
}

/// NAME=value and NAME="value" with commas between (section 4.2).
class Attributes {
  public:
    explicit Attributes(std::string_view text) : m_text(text) {}

    [[nodiscard]] std::string_view value(std::string_view name) const {
        std::size_t at = 0;
        while (at < m_text.size()) {
            const std::size_t equals = m_text.find('=', at);
            if (equals == std::string_view::npos)
                return {};
            const bool isQuoted = equals + 1 < m_text.size() && m_text[equals + 1] == '"';
            const std::size_t from = equals + (isQuoted ? 2 : 1);
            const std::size_t end =
                std::min(m_text.find(isQuoted ? '"' : ',', from), m_text.size());
            if (trimmed(m_text.substr(at, equals - at)) == name)
                return m_text.substr(from, end - from);
            const std::size_t comma = m_text.find(',', end);
            at = comma == std::string_view::npos ? m_text.size() : comma + 1;
        }
        return {};
    }
    [[nodiscard]] std::string text(std::string_view name) const { return std::string(value(name)); }

  private:
    std::string_view m_text;
};

bool namesPictures(std::string_view codecs) {
    constexpr std::array<std::string_view, 9> kPictures{
        "avc", "hvc1", "hev1", "vp08", "vp09", "vp8", "vp9", "av01", "dvh"};
    return std::any_of(kPictures.begin(), kPictures.end(), [codecs](std::string_view name) {
        return codecs.find(name) != std::string_view::npos;
    });
}

std::optional<std::array<std::uint8_t, 16>> initVector(std::string_view text) {
    constexpr std::size_t kDigits = 32;
    if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X'))
        return std::nullopt;
    text.remove_prefix(2);
    if (text.size() > kDigits ||
        !std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isxdigit(c); }))
        return std::nullopt;
    const std::string digits = std::string(kDigits - text.size(), '0') + std::string(text);
    std::array<std::uint8_t, 16> result{};
    for (std::size_t n = 0; n < result.size(); ++n)
        result[n] =
            static_cast<std::uint8_t>(std::strtoul(digits.substr(2 * n, 2).c_str(), nullptr, 16));
    return result;
}

class Parser {
  public:
    void line(std::string_view text);
    HlsPlaylist take();

  private:
    void tag(std::string_view name, std::string_view value);
    void segmentTag(std::string_view name, std::string_view value);
    void variantTag(std::string_view value);
    void mediaTag(std::string_view value);
    void keyTag(std::string_view value);
    void mapTag(std::string_view value);
    void address(std::string_view uri);

    HlsPlaylist m_list;
    HlsSegment m_next;                 ///< what has been said of the segment whose address follows
    std::uint64_t m_firstSequence = 0; ///< holds for the whole list, wherever it stands
    std::uint64_t m_count = 0;
    std::string m_rangeUri; ///< of the last byte range
    std::uint64_t m_rangeEnd = 0;
    std::optional<std::string> m_range;
    std::optional<HlsVariant> m_variant;
    bool m_isMedia = false;
};

void Parser::line(std::string_view text) {
    if (text.empty())
        return;
    if (text[0] != '#') {
        address(text);
        return;
    }
    const std::size_t colon = text.find(':');
    if (startsWith(text, "#EXT"))
        tag(text.substr(0, colon),
            colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1));
}

void Parser::tag(std::string_view name, std::string_view value) {
    if (name == "#EXT-X-STREAM-INF")
        variantTag(value);
    else if (name == "#EXT-X-MEDIA")
        mediaTag(value);
    else if (name == "#EXT-X-TARGETDURATION")
        m_list.targetSeconds = positiveNumber(value);
    else if (name == "#EXT-X-MEDIA-SEQUENCE")
        m_firstSequence = wholeNumber(value);
    else if (name == "#EXT-X-ENDLIST")
        m_list.hasEnd = true;
    else if (name == "#EXT-X-START")
        m_list.startOffset = std::strtod(Attributes(value).text("TIME-OFFSET").c_str(), nullptr);
    else
        segmentTag(name, value);
    m_isMedia = m_isMedia || startsWith(name, "#EXT-X-TARGETDURATION") ||
                startsWith(name, "#EXT-X-MEDIA-SEQUENCE");
}

void Parser::segmentTag(std::string_view name, std::string_view value) {
    if (name == "#EXTINF") {
        m_next.seconds = positiveNumber(value);
        m_next.info = std::string(value);
    } else if (name == "#EXT-X-BYTERANGE") {
        m_range = std::string(value);
    } else if (name == "#EXT-X-DISCONTINUITY") {
        m_next.breaksOff = true;
    } else if (name == "#EXT-X-GAP") {
        m_next.isMissing = true;
    } else if (name == "#EXT-X-KEY") {
        keyTag(value);
    } else if (name == "#EXT-X-MAP") {
        mapTag(value);
    }
}

void Parser::variantTag(std::string_view value) {
    const Attributes attributes(value);
    HlsVariant variant;
    variant.bandwidth = wholeNumber(attributes.value("BANDWIDTH"));
    variant.codecs = attributes.text("CODECS");
    variant.audioGroup = attributes.text("AUDIO");
    variant.hasVideo = !attributes.value("RESOLUTION").empty() || namesPictures(variant.codecs);
    m_variant = std::move(variant);
}

void Parser::mediaTag(std::string_view value) {
    const Attributes attributes(value);
    if (attributes.value("TYPE") != "AUDIO" || m_list.renditions.size() >= kMaxVariants)
        return;
    m_list.renditions.push_back({attributes.text("GROUP-ID"),
                                 attributes.text("URI"),
                                 attributes.value("DEFAULT") == "YES",
                                 attributes.value("AUTOSELECT") == "YES"});
}

void Parser::keyTag(std::string_view value) {
    const Attributes attributes(value);
    const std::string_view method = attributes.value("METHOD");
    m_next.key = {};
    if (method == "NONE")
        return;
    m_next.key.method = method == "AES-128" ? HlsKey::Method::Aes128 : HlsKey::Method::Other;
    m_next.key.uri = attributes.text("URI");
    m_next.key.iv = initVector(attributes.value("IV"));
}

void Parser::mapTag(std::string_view value) {
    const Attributes attributes(value);
    m_next.map = byteRange(attributes.value("BYTERANGE"), 0);
    m_next.map.uri = attributes.text("URI");
}

void Parser::address(std::string_view uri) {
    if (m_variant) {
        m_variant->uri = std::string(uri);
        if (m_list.variants.size() < kMaxVariants)
            m_list.variants.push_back(std::move(*m_variant));
        m_variant.reset();
        return;
    }
    if (m_next.info.empty())
        return; // an address that EXTINF has not announced is none of a segment
    if (m_list.segments.size() >= 2 * kMaxHlsSegments)
        m_list.segments.erase(m_list.segments.begin(),
                              m_list.segments.begin() +
                                  static_cast<std::ptrdiff_t>(kMaxHlsSegments));
    if (m_range)
        m_next.resource = byteRange(*m_range, m_rangeUri == uri ? m_rangeEnd : 0);
    m_next.resource.uri = std::string(uri);
    m_next.sequence = m_count++;
    m_rangeUri = m_next.resource.uri;
    m_rangeEnd = m_next.resource.offset + m_next.resource.length;
    m_list.segments.push_back(m_next);
    m_next.resource = {};
    m_next.seconds = 0.0;
    m_next.info.clear();
    m_next.breaksOff = m_next.isMissing = false;
    m_range.reset();
}

HlsPlaylist Parser::take() {
    if (!m_list.variants.empty())
        m_list.kind = HlsPlaylist::Kind::Master;
    else if (m_isMedia)
        m_list.kind = HlsPlaylist::Kind::Media;
    for (HlsSegment& segment : m_list.segments)
        segment.sequence += m_firstSequence;
    if (m_list.segments.size() > kMaxHlsSegments)
        m_list.segments.erase(m_list.segments.begin(),
                              m_list.segments.end() - static_cast<std::ptrdiff_t>(kMaxHlsSegments));
    return std::move(m_list);
}

} // namespace

bool mayBeHlsPlaylist(std::string_view text) {
    if (startsWith(text, kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    else if (startsWith(kByteOrderMark, text))
        return true;
    return startsWith(text, kMark) || startsWith(kMark, text);
}

HlsPlaylist parseHlsPlaylist(std::string_view text) {
    if (text.size() < kMark.size() || !mayBeHlsPlaylist(text))
        return {};
    Parser parser;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        parser.line(trimmed(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parser.take();
}

} // namespace BASS
