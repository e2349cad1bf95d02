#include "audio/bass/bass_text.h"

#include <QString>

#include <cstring>

namespace BASS {

std::u16string wideText(const void* text, DWORD flags) {
    if ((flags & BASS_UNICODE) != 0)
        return static_cast<const char16_t*>(text);
    return QString::fromLatin1(static_cast<const char*>(text)).toStdU16String();
}

std::u16string widePath(const void* path, DWORD flags) {
    QString result = (flags & BASS_UNICODE) != 0
                         ? QString::fromUtf16(static_cast<const char16_t*>(path))
                         : QString::fromLocal8Bit(static_cast<const char*>(path));
    const auto scheme = QStringLiteral("file://");
    if (result.startsWith(scheme, Qt::CaseInsensitive))
        result.remove(0, scheme.size());
    return result.toStdU16String();
}

DWORD tagLength(const char* tag, bool isList) {
    std::size_t length = std::strlen(tag);
    while (isList && tag[length + 1] != '\0' && length > 0)
        length += 1 + std::strlen(tag + length + 1);
    return static_cast<DWORD>(length);
}

} // namespace BASS
