#include "support/system.h"

// The first declares what the second needs.
// clang-format off
#include <winsock2.h>
#include <windows.h>
#include <psapi.h>
#include <tlhelp32.h>
// clang-format on
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

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

void makeStandardStreamsBinary() {
    for (std::FILE* stream : {stdin, stdout, stderr})
        _setmode(_fileno(stream), _O_BINARY);
}

QStringList loadedLibraries(qint64 processId) {
    const HANDLE process = OpenProcess(
        PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, static_cast<DWORD>(processId));
    if (process == nullptr)
        return {};
    QStringList paths;
    std::array<HMODULE, 1024> modules{};
    DWORD bytes = 0;
    if (K32EnumProcessModules(process, modules.data(), sizeof modules, &bytes)) {
        const std::size_t count = std::min(modules.size(), std::size_t{bytes / sizeof(HMODULE)});
        std::array<wchar_t, 1024> path{};
        for (std::size_t i = 0; i < count; ++i) {
            const DWORD length = K32GetModuleFileNameExW(
                process, modules[i], path.data(), static_cast<DWORD>(path.size()));
            paths << QString::fromWCharArray(path.data(), static_cast<int>(length));
        }
    }
    CloseHandle(process);
    return paths;
}

namespace {

std::vector<DWORD> threadsOf(DWORD processId) {
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::vector<DWORD> threads;
    for (BOOL isThere = Thread32First(all, &entry); isThere; isThere = Thread32Next(all, &entry)) {
        if (entry.th32OwnerProcessID == processId)
            threads.push_back(entry.th32ThreadID);
    }
    CloseHandle(all);
    return threads;
}

} // namespace

/// By the message that ends a thread's event loop, for there is no window to close.
bool askToEnd(qint64 processId) {
    bool isAsked = false;
    for (const DWORD thread : threadsOf(static_cast<DWORD>(processId)))
        isAsked = PostThreadMessageW(thread, WM_QUIT, 0, 0) != 0 || isAsked;
    return isAsked;
}

int threadCount() {
    return static_cast<int>(threadsOf(GetCurrentProcessId()).size());
}

int openFiles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

} // namespace test_system
