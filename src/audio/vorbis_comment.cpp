#include "audio/vorbis_comment.h"

#include "audio/ascii_text.h"

#include <cstring>

namespace BASS {
namespace {

class Reader {
  public:
    Reader(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    std::optional<std::uint32_t> number() {
        if (m_size < 4)
            return std::nullopt;
        const std::uint32_t value = m_data[0] | (static_cast<std::uint32_t>(m_data[1]) << 8) |
                                    (static_cast<std::uint32_t>(m_data[2]) << 16) |
                                    (static_cast<std::uint32_t>(m_data[3]) << 24);
        advance(4);
        return value;
    }

    std::optional<std::string> text() {
        const auto length = number();
        if (!length || *length > m_size)
            return std::nullopt;
        std::string result(*length, '\0');
        if (*length > 0)
            std::memcpy(result.data(), m_data, *length);
        advance(*length);
        return result;
    }

  private:
    void advance(std::size_t n) {
        m_data += n;
        m_size -= n;
    }

    const std::uint8_t* m_data;
    std::size_t m_size;
};

} // namespace

std::string VorbisComments::value(const char* name) const {
    for (const std::string& entry : entries) {
        const std::size_t equals = entry.find('=');
        if (equals != std::string::npos &&
            equalsNoCase(std::string_view(entry).substr(0, equals), name))
            return entry.substr(equals + 1);
    }
    return {};
}

std::optional<VorbisComments> parseVorbisComments(const std::uint8_t* data, std::size_t size) {
    Reader reader(data, size);
    VorbisComments result;
    auto vendor = reader.text();
    if (!vendor)
        return std::nullopt;
    result.vendor = std::move(*vendor);
    const auto count = reader.number();
    for (std::uint32_t n = 0; count && n < *count; ++n) {
        auto entry = reader.text();
        if (!entry)
            break;
        result.entries.push_back(std::move(*entry));
    }
    return result;
}

} // namespace BASS
