#include "platform/console.h"

#include <windows.h>

#include <cstdio>

namespace {
bool goesSomewhere(DWORD stream) {
    const HANDLE handle = GetStdHandle(stream);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
           GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

void openConsole(const char* mode, std::FILE* stream) {
    // Fails only where the console has just gone: then the stream stays silent, as it was.
    if (std::freopen("CONOUT$", mode, stream) != nullptr)
        std::setvbuf(stream, nullptr, _IONBF, 0);
}
} // namespace

void attachParentConsole() {
    const bool hasOutput = goesSomewhere(STD_OUTPUT_HANDLE);
    const bool hasErrors = goesSomewhere(STD_ERROR_HANDLE);
    if ((hasOutput && hasErrors) || !AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    if (!hasOutput)
        openConsole("w", stdout);
    if (!hasErrors)
        openConsole("w", stderr);
}
