#include "platform/process.h"

#include <windows.h>

#include <array>
#include <cwchar>

namespace {
constexpr DWORD kPathLength = 32768;

bool executable(HANDLE process, std::array<wchar_t, kPathLength>& path) {
    DWORD length = kPathLength;
    return QueryFullProcessImageNameW(process, 0, path.data(), &length) != 0;
}
} // namespace

bool isThisProgramRunning(qint64 pid) {
    if (pid <= 0 || pid > 0xffffffffLL)
        return false;
    const HANDLE process = OpenProcess(
        PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
    if (process == nullptr)
        return GetLastError() == ERROR_ACCESS_DENIED;
    // static: twice 64 KiB do not belong on the stack; only the start-up thread comes here.
    static std::array<wchar_t, kPathLength> theirs{};
    static std::array<wchar_t, kPathLength> ours{};
    const bool isAlive = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    const bool isSame = executable(process, theirs) && executable(GetCurrentProcess(), ours) &&
                        _wcsicmp(theirs.data(), ours.data()) == 0;
    CloseHandle(process);
    return isAlive && isSame;
}
