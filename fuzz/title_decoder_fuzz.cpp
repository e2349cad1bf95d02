#include "engine/title_decoder.h"

#include <cstddef>
#include <cstdint>

/// The first byte chooses the code page, the rest is a title block.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const QByteArray kPages[] = {
        "", "Windows-1251", "Shift-JIS", "EUC-KR", "big5", "no such page"};
    if (size == 0)
        return 0;
    const QByteArray block(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1));
    const auto song = BASS::decodeIcyBlock(block, kPages[data[0] % 6]);
    if (song && song->metadata.contains(QChar(0)))
        __builtin_trap();
    return 0;
}
