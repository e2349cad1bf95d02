#include "audio/hls/hls_plan.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// A playlist, and every decision that is made on it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const BASS::HlsPlaylist list =
        BASS::parseHlsPlaylist({reinterpret_cast<const char*>(data), size});
    for (const std::string& choice : BASS::hlsChoices(list)) {
        if (choice.size() > size)
            __builtin_trap();
    }
    if (!list.segments.empty() && BASS::hlsFirstSegment(list) >= list.segments.size())
        __builtin_trap();
    for (const std::uint64_t last : {std::uint64_t{0}, std::uint64_t{7}, ~std::uint64_t{0}}) {
        const BASS::HlsNext next = BASS::hlsNextSegment(list, last);
        if (next.what == BASS::HlsNext::What::Fetch && next.index >= list.segments.size())
            __builtin_trap();
    }
    const auto pause = BASS::hlsReloadPause(list, size % 2 == 0);
    if (pause.count() < 500 || pause.count() > 30000)
        __builtin_trap();
    return 0;
}
