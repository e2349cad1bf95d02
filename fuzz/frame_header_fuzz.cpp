#include "audio/frame_header.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto frame = BASS::parseMpegFrame(data, size)) {
        if (frame->bytes <= BASS::kMpegHeaderBytes || frame->samples <= 0 || frame->sampleRate <= 0)
            __builtin_trap();
        if (const auto reach = BASS::mainDataBegin(*frame, data, size); reach && *reach > 511)
            __builtin_trap();
    }
    if (const auto frame = BASS::parseAdtsFrame(data, size)) {
        if (frame->bytes <= BASS::kAdtsHeaderBytes || frame->sampleRate <= 0)
            __builtin_trap();
    }
    return 0;
}
