#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

// Segments that their playlist has encrypted as a whole: AES-128 in CBC mode with PKCS #7 padding
// (RFC 8216, section 5.2). Pure functions, any thread.

namespace BASS {

constexpr std::size_t kAesBlockBytes = 16;
using AesBlock = std::array<std::uint8_t, kAesBlockBytes>;

/// The initialisation vector of a segment whose playlist names none.
AesBlock sequenceVector(std::uint64_t sequence);

/// In place, and without the padding. False: no whole blocks, or the key is not the one, or none.
bool decryptSegment(std::vector<std::uint8_t>& bytes,
                    const std::vector<std::uint8_t>& key,
                    AesBlock vector);

} // namespace BASS
