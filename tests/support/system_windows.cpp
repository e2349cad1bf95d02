#include "support/system.h"

// The first declares what the second needs.
// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on

namespace test_system {

void makeCloseReset(qintptr socketDescriptor) {
    const linger now{1, 0};
    setsockopt(static_cast<SOCKET>(socketDescriptor),
               SOL_SOCKET,
               SO_LINGER,
               reinterpret_cast<const char*>(&now),
               sizeof now);
}

qint64 readStandardInput(char* data, unsigned size) {
    // not by the C library, which would take the bytes for text
    DWORD count = 0;
    if (ReadFile(GetStdHandle(STD_INPUT_HANDLE), data, size, &count, nullptr))
        return count;
    return GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
}

} // namespace test_system
