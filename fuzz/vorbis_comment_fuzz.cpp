#include "audio/vorbis_comment.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto comments = BASS::parseVorbisComments(data, size)) {
        std::size_t total = comments->vendor.size();
        for (const auto& entry : comments->entries)
            total += entry.size();
        if (total > size)
            __builtin_trap();
        (void)comments->value("TITLE");
    }
    return 0;
}
