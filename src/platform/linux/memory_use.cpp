#include "platform/memory_use.h"

#include <malloc.h>

void tuneMemoryUse() {
    constexpr int kBigBytes = 1024 * 1024;
    // set at all, it no longer grows with each big block that is freed, up to 32 MB
    mallopt(M_MMAP_THRESHOLD, kBigBytes);
    // by default a thread gives 128 KB back and asks for them again at every reading
    mallopt(M_TRIM_THRESHOLD, 2 * kBigBytes);
}
