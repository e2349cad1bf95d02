#pragma once

#include <string_view>

// Texts of protocols, whose letters are ASCII. Pure, any thread.

namespace BASS {

/// Without blanks, tabs and line ends at both sides.
[[nodiscard]] std::string_view trimmed(std::string_view text);
/// Case-insensitive in ASCII alone.
[[nodiscard]] bool equalsNoCase(std::string_view a, std::string_view b);

} // namespace BASS
