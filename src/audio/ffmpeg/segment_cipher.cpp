#include "audio/ffmpeg/segment_cipher.h"

extern "C" {
#include <libavutil/aes.h>
#include <libavutil/mem.h>
}

#include <memory>

namespace BASS {
namespace {

struct FreeAes {
    void operator()(AVAES* aes) const { av_free(aes); }
};

} // namespace

AesBlock sequenceVector(std::uint64_t sequence) {
    AesBlock vector{};
    for (std::size_t n = 0; n < sizeof sequence; ++n)
        vector[kAesBlockBytes - 1 - n] = static_cast<std::uint8_t>(sequence >> (8 * n) & 0xFF);
    return vector;
}

bool decryptSegment(std::vector<std::uint8_t>& bytes,
                    const std::vector<std::uint8_t>& key,
                    AesBlock vector) {
    constexpr int kBits = 8 * kAesBlockBytes;
    if (key.size() != kAesBlockBytes || bytes.empty() || bytes.size() % kAesBlockBytes != 0)
        return false;
    const std::unique_ptr<AVAES, FreeAes> aes(av_aes_alloc());
    if (!aes || av_aes_init(aes.get(), key.data(), kBits, 1) < 0)
        return false;
    const int blocks = static_cast<int>(bytes.size() / kAesBlockBytes);
    av_aes_crypt(aes.get(), bytes.data(), bytes.data(), blocks, vector.data(), 1);
    const std::size_t padding = bytes.back();
    if (padding == 0 || padding > kAesBlockBytes)
        return false;
    bytes.resize(bytes.size() - padding);
    return true;
}

} // namespace BASS
