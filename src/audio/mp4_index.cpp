#include "audio/mp4_index.h"

#include <algorithm>
#include <array>

namespace BASS {
namespace {

std::uint64_t number(const std::uint8_t* data, std::size_t bytes) {
    std::uint64_t value = 0;
    for (std::size_t n = 0; n < bytes; ++n)
        value = value << 8 | data[n];
    return value;
}

void store(std::uint8_t* data, std::size_t bytes, std::uint64_t value) {
    for (std::size_t n = bytes; n > 0; --n, value >>= 8)
        data[n - 1] = static_cast<std::uint8_t>(value & 0xFF);
}

/// "stco" and "co64": version and flags, a count, the offsets (section 8.7.5).
bool shiftTable(std::uint8_t* data, std::size_t size, std::size_t width, std::uint64_t by) {
    constexpr std::size_t kHead = 8;
    if (size < kHead)
        return false;
    const std::uint64_t count = number(data + 4, 4);
    if (count > (size - kHead) / width)
        return false;
    const std::uint64_t most = width == 4 ? 0xFFFFFFFFU : ~std::uint64_t{0};
    for (std::uint64_t n = 0; n < count; ++n) {
        std::uint8_t* const at = data + kHead + n * width;
        const std::uint64_t offset = number(at, width);
        if (offset > most - by)
            return false;
        store(at, width, offset + by);
    }
    return true;
}

bool shiftInside(std::uint8_t* data, std::size_t size, std::uint64_t by, int depth) {
    constexpr std::array kContainers{
        mp4Type("moov"), mp4Type("trak"), mp4Type("mdia"), mp4Type("minf"), mp4Type("stbl")};
    constexpr int kDeepest = 8;
    while (size > 0) {
        const auto box = parseMp4Box(data, size);
        if (!box || depth > kDeepest)
            return false;
        const std::uint64_t bytes = box->bytes == 0 ? size : box->bytes;
        if (bytes > size || bytes < box->headerBytes)
            return false;
        std::uint8_t* const body = data + box->headerBytes;
        const auto left = static_cast<std::size_t>(bytes - box->headerBytes);
        bool isOk = box->type != mp4Type("cmov"); // packed: cannot be changed
        if (box->type == mp4Type("stco"))
            isOk = shiftTable(body, left, 4, by);
        else if (box->type == mp4Type("co64"))
            isOk = shiftTable(body, left, 8, by);
        else if (std::find(kContainers.begin(), kContainers.end(), box->type) != kContainers.end())
            isOk = shiftInside(body, left, by, depth + 1);
        if (!isOk)
            return false;
        data += bytes;
        size -= static_cast<std::size_t>(bytes);
    }
    return true;
}

} // namespace

std::optional<Mp4Box> parseMp4Box(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kShort = 8;
    if (size < kShort)
        return std::nullopt;
    Mp4Box box;
    box.bytes = number(data, 4);
    box.type = static_cast<std::uint32_t>(number(data + 4, 4));
    box.headerBytes = kShort;
    if (box.bytes == 1) {
        if (size < kMp4BoxHeaderBytes)
            return std::nullopt;
        box.bytes = number(data + kShort, 8);
        box.headerBytes = kMp4BoxHeaderBytes;
        if (box.bytes == 0)
            return std::nullopt;
    }
    const bool isName = std::all_of(data + 4, data + kShort, [](std::uint8_t c) {
        return (c >= 0x20 && c < 0x7F) || c == 0xA9;
    });
    if (!isName || (box.bytes != 0 && box.bytes < box.headerBytes))
        return std::nullopt;
    return box;
}

bool shiftMp4Offsets(std::vector<std::uint8_t>& moov, std::uint64_t by) {
    return shiftInside(moov.data(), moov.size(), by, 0);
}

} // namespace BASS
