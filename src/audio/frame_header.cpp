#include "audio/frame_header.h"

#include <array>

namespace BASS {
namespace {

using BitrateRow = std::array<int, 16>;
// kbit/s by the header's index; 0: free format, -1: not allowed
constexpr BitrateRow kV1L1{
    0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, -1};
constexpr BitrateRow kV1L2{0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, -1};
constexpr BitrateRow kV1L3{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, -1};
constexpr BitrateRow kV2L1{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256, -1};
constexpr BitrateRow kV2L23{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, -1};

int kilobits(int version, int layer, int index) {
    const auto at = static_cast<std::size_t>(index);
    if (version == 1)
        return layer == 1 ? kV1L1[at] : layer == 2 ? kV1L2[at] : kV1L3[at];
    return layer == 1 ? kV2L1[at] : kV2L23[at];
}

int mpegSampleRate(int version, int index) {
    constexpr std::array<int, 3> kRates{44100, 48000, 32000};
    const int rate = kRates[static_cast<std::size_t>(index)];
    return version == 1 ? rate : version == 2 ? rate / 2 : rate / 4;
}

} // namespace

std::optional<MpegFrame> parseMpegFrame(const std::uint8_t* data, std::size_t size) {
    if (size < kMpegHeaderBytes || data[0] != 0xFF || (data[1] & 0xE0) != 0xE0)
        return std::nullopt;
    const int versionBits = (data[1] >> 3) & 3;
    const int layerBits = (data[1] >> 1) & 3;
    const int bitrateIndex = data[2] >> 4;
    const int rateIndex = (data[2] >> 2) & 3;
    if (versionBits == 1 || layerBits == 0 || rateIndex == 3)
        return std::nullopt;

    MpegFrame frame{};
    frame.version = versionBits == 3 ? 1 : versionBits == 2 ? 2 : 25;
    frame.layer = 4 - layerBits;
    const int kbit = kilobits(frame.version, frame.layer, bitrateIndex);
    if (kbit <= 0)
        return std::nullopt;
    frame.bitrate = kbit * 1000;
    frame.sampleRate = mpegSampleRate(frame.version, rateIndex);
    frame.channels = (data[3] >> 6) == 3 ? 1 : 2;
    frame.hasChecksum = (data[1] & 1) == 0;
    const int padding = (data[2] >> 1) & 1;
    const bool halved = frame.layer == 3 && frame.version != 1;
    frame.samples = frame.layer == 1 ? 384 : halved ? 576 : 1152;
    frame.bytes =
        frame.layer == 1
            ? static_cast<std::size_t>((12 * frame.bitrate / frame.sampleRate + padding) * 4)
            : static_cast<std::size_t>(frame.samples / 8 * frame.bitrate / frame.sampleRate +
                                       padding);
    if (frame.layer == 3) {
        const bool mono = frame.channels == 1;
        frame.sideInfo = frame.version == 1 ? (mono ? 17U : 32U) : (mono ? 9U : 17U);
    }
    return frame;
}

std::optional<AdtsFrame> parseAdtsFrame(const std::uint8_t* data, std::size_t size) {
    constexpr std::array<int, 13> kRates{
        96000, 88200, 64000, 48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000, 7350};
    if (size < kAdtsHeaderBytes || data[0] != 0xFF || (data[1] & 0xF6) != 0xF0)
        return std::nullopt;
    const auto rateIndex = static_cast<std::size_t>((data[2] >> 2) & 15);
    if (rateIndex >= kRates.size())
        return std::nullopt;
    AdtsFrame frame{};
    frame.profile = data[2] >> 6;
    frame.sampleRate = kRates[rateIndex];
    frame.channels = ((data[2] & 1) << 2) | (data[3] >> 6);
    frame.bytes = (static_cast<std::size_t>(data[3] & 3) << 11) |
                  (static_cast<std::size_t>(data[4]) << 3) |
                  (static_cast<std::size_t>(data[5]) >> 5);
    frame.samples = 1024 * ((data[6] & 3) + 1);
    const std::size_t headerBytes = (data[1] & 1) != 0 ? 7 : 9;
    if (frame.bytes <= headerBytes)
        return std::nullopt;
    return frame;
}

std::optional<int>
mainDataBegin(const MpegFrame& frame, const std::uint8_t* data, std::size_t size) {
    const std::size_t at = kMpegHeaderBytes + (frame.hasChecksum ? 2U : 0U);
    if (frame.layer != 3 || size < at + 2)
        return std::nullopt;
    if (frame.version != 1)
        return data[at];
    return (data[at] << 1) | (data[at + 1] >> 7);
}

bool isSameStream(const MpegFrame& a, const MpegFrame& b) {
    return a.version == b.version && a.layer == b.layer && a.sampleRate == b.sampleRate;
}

bool isSameStream(const AdtsFrame& a, const AdtsFrame& b) {
    return a.sampleRate == b.sampleRate && a.profile == b.profile && a.channels == b.channels;
}

} // namespace BASS
