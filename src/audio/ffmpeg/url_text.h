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
/// An address as it stands in a document of that address (RFC 3986, section 5.2). Empty: no address
/// can be made of it.
[[nodiscard]] std::string resolvedUrl(const std::string& base, const std::string& relative);

} // namespace BASS
