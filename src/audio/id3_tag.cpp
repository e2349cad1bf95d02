#include "audio/id3_tag.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

namespace BASS {
namespace {

constexpr int kFlagUnsynchronised = 0x80;
constexpr int kFlagExtended = 0x40;
constexpr int kFlagFooter = 0x10;

/// How a version lays out its frames.
struct Layout {
    int version;
    std::size_t idBytes;
    std::size_t headerBytes;
};

class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] std::uint8_t operator[](std::size_t at) const { return m_data[at]; }
    [[nodiscard]] const std::uint8_t* at(std::size_t at) const { return m_data + at; }
    [[nodiscard]] Bytes part(std::size_t from, std::size_t count) const {
        from = std::min(from, m_size);
        return {m_data + from, std::min(count, m_size - from)};
    }
    /// Big-endian; bits: 7 for "synchsafe" numbers, else 8.
    [[nodiscard]] std::size_t number(std::size_t from, std::size_t count, unsigned bits) const {
        std::size_t value = 0;
        for (std::size_t n = 0; n < count && from + n < m_size; ++n)
            value = (value << bits) | (m_data[from + n] & ((1U << bits) - 1U));
        return value;
    }

  private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};

void appendUtf8(std::string& out, std::uint32_t code) {
    const auto put = [&out](std::uint32_t byte) { out += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

std::string fromUtf16(Bytes text, bool isBigEndian) {
    std::size_t at = 0;
    if (text.size() >= 2 &&
        ((text[0] == 0xFE && text[1] == 0xFF) || (text[0] == 0xFF && text[1] == 0xFE))) {
        isBigEndian = text[0] == 0xFE;
        at = 2;
    }
    const auto unit = [&text, isBigEndian](std::size_t from) -> std::uint32_t {
        return isBigEndian ? static_cast<std::uint32_t>(text[from] << 8 | text[from + 1])
                           : static_cast<std::uint32_t>(text[from + 1] << 8 | text[from]);
    };
    constexpr std::uint32_t kReplacement = 0xFFFD;
    std::string out;
    for (; at + 1 < text.size(); at += 2) {
        std::uint32_t code = unit(at);
        if (code >= 0xD800 && code < 0xDC00 && at + 3 < text.size()) {
            const std::uint32_t low = unit(at + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                at += 2;
            }
        }
        appendUtf8(out, code >= 0xD800 && code < 0xE000 ? kReplacement : code);
    }
    return out;
}

std::string fromLatin1(Bytes text) {
    std::string out;
    for (std::size_t n = 0; n < text.size(); ++n)
        appendUtf8(out, text[n]);
    return out;
}

/// Zeros part several values and end the last.
std::string joinedValues(const std::string& text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\0', at), text.size());
        if (end > at)
            out += (out.empty() ? "" : " / ") + text.substr(at, end - at);
        at = end + 1;
    }
    return out;
}

/// The first byte tells the encoding (ID3v2.4 structure, section 4).
std::string frameText(Bytes body) {
    if (body.size() < 2)
        return {};
    const Bytes text = body.part(1, body.size() - 1);
    switch (body[0]) {
    case 0:
        return joinedValues(fromLatin1(text));
    case 1:
        return joinedValues(fromUtf16(text, false));
    case 2:
        return joinedValues(fromUtf16(text, true));
    case 3:
        return joinedValues(std::string(reinterpret_cast<const char*>(text.at(0)), text.size()));
    default:
        return {};
    }
}

/// Every 0xFF 0x00 was 0xFF (ID3v2.4 structure, section 6.1).
std::vector<std::uint8_t> resynchronised(Bytes bytes) {
    std::vector<std::uint8_t> out;
    out.reserve(bytes.size());
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        out.push_back(bytes[n]);
        if (bytes[n] == 0xFF && n + 1 < bytes.size() && bytes[n + 1] == 0)
            ++n;
    }
    return out;
}

void takeFrame(std::string_view id, Bytes body, Id3Texts& out) {
    if ((id == "TIT2" || id == "TT2") && out.title.empty())
        out.title = frameText(body);
    else if ((id == "TPE1" || id == "TP1") && out.artist.empty())
        out.artist = frameText(body);
}

Id3Texts readFrames(Bytes frames, const Layout& layout) {
    Id3Texts out;
    std::size_t at = 0;
    while (at + layout.headerBytes <= frames.size() && frames[at] != 0) {
        const std::string_view id(reinterpret_cast<const char*>(frames.at(at)), layout.idBytes);
        const std::size_t sizeBytes = layout.idBytes == 3 ? 3 : 4;
        std::size_t size =
            frames.number(at + layout.idBytes, sizeBytes, layout.version >= 4 ? 7 : 8);
        const int flags = layout.version >= 4 ? frames[at + 9] : 0;
        at += layout.headerBytes;
        size = std::min(size, frames.size() - at);
        constexpr int kHasDataLength = 0x01;
        constexpr int kCompressedOrEncrypted = 0x0C;
        const std::size_t skip = (flags & kHasDataLength) != 0 ? 4 : 0;
        if ((flags & kCompressedOrEncrypted) == 0 && size >= skip) {
            const Bytes body = frames.part(at + skip, size - skip);
            constexpr int kUnsynchronised = 0x02;
            if ((flags & kUnsynchronised) != 0) {
                const auto plain = resynchronised(body);
                takeFrame(id, {plain.data(), plain.size()}, out);
            } else {
                takeFrame(id, body, out);
            }
        }
        at += size;
    }
    return out;
}

std::size_t extendedHeaderBytes(Bytes body, int version) {
    if (version >= 4)
        return body.number(0, 4, 7); // counts itself
    return body.number(0, 4, 8) + 4;
}

} // namespace

std::size_t id3TagBytes(const std::uint8_t* data, std::size_t size) {
    if (size < kId3HeaderBytes || std::memcmp(data, "ID3", 3) != 0 || data[3] == 0xFF ||
        data[4] == 0xFF)
        return 0;
    if (((data[6] | data[7] | data[8] | data[9]) & 0x80) != 0)
        return 0;
    const std::size_t body = Bytes(data, size).number(6, 4, 7);
    return body + kId3HeaderBytes * ((data[5] & kFlagFooter) != 0 ? 2U : 1U);
}

std::optional<Id3Texts> parseId3Tag(const std::uint8_t* data, std::size_t size) {
    if (id3TagBytes(data, size) == 0)
        return std::nullopt;
    const int version = data[3];
    const int flags = data[5];
    const Bytes all(data, size);
    Bytes body = all.part(kId3HeaderBytes, all.number(6, 4, 7));
    std::vector<std::uint8_t> plain;
    if (version < 4 && (flags & kFlagUnsynchronised) != 0) {
        plain = resynchronised(body);
        body = {plain.data(), plain.size()};
    }
    if (version >= 3 && (flags & kFlagExtended) != 0) {
        const std::size_t skip = extendedHeaderBytes(body, version);
        body = body.part(skip, body.size());
    }
    const Layout layout = version <= 2 ? Layout{version, 3, 6} : Layout{version, 4, 10};
    return readFrames(body, layout);
}

} // namespace BASS
