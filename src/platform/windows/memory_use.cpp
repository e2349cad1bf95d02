#include "platform/memory_use.h"

void tuneMemoryUse() {}
