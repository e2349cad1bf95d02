#include "engine/stream_headers.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // a header list ends with an empty line: two zeros
    const std::string list(reinterpret_cast<const char*>(data), size);
    BASS::parseStreamHeaders((list + std::string(2, '\0')).data());
    return 0;
}
