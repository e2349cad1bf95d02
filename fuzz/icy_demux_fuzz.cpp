#include "audio/ffmpeg/icy_demux.h"

#include <algorithm>
#include <string>

namespace {

class Collector final : public BASS::IcyDemux::Sink {
  public:
    std::string seen;
    void audio(const std::uint8_t* data, std::size_t size) override {
        seen.append(reinterpret_cast<const char*>(data), size);
    }
    void title(std::string_view block) override { seen.append(block); }
};

} // namespace

/// Two bytes of metaint, one of chunk size, then the stream: however it is cut, the outcome is one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3)
        return 0;
    const int metaint = data[0] | (data[1] << 8);
    const std::size_t chunk = data[2] + 1U;
    const std::uint8_t* stream = data + 3;
    const std::size_t length = size - 3;
    Collector whole;
    BASS::IcyDemux atOnce(metaint, whole);
    atOnce.feed(stream, length);
    Collector parts;
    BASS::IcyDemux inParts(metaint, parts);
    for (std::size_t at = 0; at < length; at += chunk)
        inParts.feed(stream + at, std::min(chunk, length - at));
    if (whole.seen != parts.seen)
        __builtin_trap();
    return 0;
}
