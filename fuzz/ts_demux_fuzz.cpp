#include "audio/hls/ts_demux.h"

#include <algorithm>
#include <string>

namespace {

struct Collected final : BASS::TsDemux::Sink {
    void audio(const std::uint8_t* data, std::size_t size) override {
        bytes.append(reinterpret_cast<const char*>(data), size);
    }
    void id3(const std::uint8_t* data, std::size_t size) override {
        bytes.append(reinterpret_cast<const char*>(data), size);
    }
    std::string bytes;
};

} // namespace

/// The first byte is the chunk size: whatever it is, the same comes out.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1)
        return 0;
    Collected whole;
    BASS::TsDemux first(whole);
    first.feed(data + 1, size - 1);
    first.reset();
    Collected parts;
    BASS::TsDemux second(parts);
    const std::size_t chunk = std::max<std::size_t>(1, data[0]);
    for (std::size_t at = 1; at < size; at += chunk)
        second.feed(data + at, std::min(chunk, size - at));
    second.reset();
    if (whole.bytes != parts.bytes)
        __builtin_trap();
    return 0;
}
