#include "audio/id3_tag.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool isTag = BASS::id3TagBytes(data, size) > 0;
    const auto texts = BASS::parseId3Tag(data, size);
    if (texts.has_value() != isTag)
        __builtin_trap();
    return 0;
}
