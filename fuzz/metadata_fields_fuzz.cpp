#include "engine/metadata_fields.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const auto song = BASS::songFromFields(QString::fromUtf8(bytes));
    if (song && song->track.isEmpty())
        __builtin_trap();
    static_cast<void>(BASS::songFromSegmentInfo(bytes));
    return 0;
}
