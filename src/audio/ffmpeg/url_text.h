#pragma once

#include <filesystem>
#include <string>

// Texts that cross the library's interface. Any thread.

namespace BASS {

/// text: UTF-16 where isWide, else Latin-1; zero-terminated.
[[nodiscard]] std::string utf8Text(const void* text, bool isWide);
/// text: UTF-16 where isWide, else in the system's 8-bit encoding.
[[nodiscard]] std::filesystem::path filePath(const void* text, bool isWide);
/// The file's address, UTF-16.
[[nodiscard]] std::u16string fileUrl(const std::filesystem::path& path);
/// The address as a request needs it: blanks and bytes beyond ASCII behind the host are escaped,
/// icy:// is http://.
[[nodiscard]] std::string requestUrl(const std::string& url);

} // namespace BASS
