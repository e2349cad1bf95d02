#include "audio/ascii_text.h"

#include <algorithm>
#include <cctype>

namespace BASS {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t from = text.find_first_not_of(kBlanks);
    if (from == std::string_view::npos)
        return {};
    return text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

} // namespace BASS
