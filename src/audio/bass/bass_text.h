#pragma once

#include "audio/bass_defs.h"

#include <string>

// Texts as the closed library takes them: always UTF-16, so that no system's code page has a say.

namespace BASS {

/// text: UTF-16 with BASS_UNICODE in the flags, else Latin-1; zero-terminated.
[[nodiscard]] std::u16string wideText(const void* text, DWORD flags);
/// The same for a file's path, which else is in the system's 8-bit encoding. The scheme of a file
/// address is taken off.
[[nodiscard]] std::u16string widePath(const void* path, DWORD flags);
/// Bytes of a tag without its last zero: one text, or with `isList` texts ended by an empty one.
[[nodiscard]] DWORD tagLength(const char* tag, bool isList);

} // namespace BASS
