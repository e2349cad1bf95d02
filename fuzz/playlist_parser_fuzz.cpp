#include "engine/playlist_parser.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const auto playlist = BASS::parsePlaylist(text, QStringLiteral("http://host/list.m3u"));
    for (const QString& address : playlist.addresses) {
        if (!address.contains(QLatin1String("://")))
            __builtin_trap();
    }
    return 0;
}
