#include "platform/registry_guard.h"

// The first declares what the second needs.
// clang-format off
#include <windows.h>
#include <psapi.h>
// clang-format on

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>

// The import tables of all loaded modules are walked (PE/COFF specification, section 6.4) and their
// pointers to RegCreateKeyExW replaced: nothing of the system's own code is changed.

namespace {
using RegCreateKeyExWFunction = LSTATUS(WINAPI*)(
    HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM, const LPSECURITY_ATTRIBUTES, PHKEY, LPDWORD);

RegCreateKeyExWFunction realRegCreateKeyExW = nullptr;

LSTATUS WINAPI guardedRegCreateKeyExW(HKEY key,
                                      LPCWSTR subKey,
                                      DWORD reserved,
                                      LPWSTR keyClass,
                                      DWORD options,
                                      REGSAM access,
                                      const LPSECURITY_ATTRIBUTES security,
                                      PHKEY result,
                                      LPDWORD disposition) {
    if (subKey != nullptr && std::wcsstr(subKey, L"Trolltech") != nullptr)
        return 1;
    return realRegCreateKeyExW(
        key, subKey, reserved, keyClass, options, access, security, result, disposition);
}

template <typename T>
T* at(HMODULE module, DWORD offset) {
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(module) + offset);
}

const IMAGE_IMPORT_DESCRIPTOR* importTable(HMODULE module) {
    const auto* dos = at<const IMAGE_DOS_HEADER>(module, 0);
    if (dos->e_magic != IMAGE_DOS_SIGNATURE)
        return nullptr;
    const auto* nt = at<const IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    if (nt->Signature != IMAGE_NT_SIGNATURE)
        return nullptr;
    const IMAGE_DATA_DIRECTORY& directory =
        nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0 || directory.Size == 0)
        return nullptr;
    return at<const IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
}

bool redirect(IMAGE_THUNK_DATA* thunk) {
    DWORD protection = 0;
    auto* slot = &thunk->u1.Function;
    if (!VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection))
        return false;
    *slot = reinterpret_cast<ULONG_PTR>(&guardedRegCreateKeyExW);
    VirtualProtect(slot, sizeof *slot, protection, &protection);
    return true;
}

/// True where at least one pointer of the module was replaced.
bool guardModule(HMODULE module) {
    const IMAGE_IMPORT_DESCRIPTOR* entry = importTable(module);
    if (entry == nullptr)
        return false;
    bool isGuarded = false;
    const auto real = reinterpret_cast<ULONG_PTR>(realRegCreateKeyExW);
    for (; entry->Name != 0; ++entry)
        for (auto* thunk = at<IMAGE_THUNK_DATA>(module, entry->FirstThunk); thunk->u1.Function != 0;
             ++thunk)
            if (thunk->u1.Function == real)
                isGuarded = redirect(thunk) || isGuarded;
    return isGuarded;
}

template <typename Function>
Function procedure(HMODULE module, const char* name) {
    // memcpy: a cast between unrelated function types warns, rightly.
    Function function = nullptr;
    const FARPROC address = GetProcAddress(module, name);
    static_assert(sizeof function == sizeof address);
    std::memcpy(&function, &address, sizeof function);
    return function;
}
} // namespace

int installRegistryGuard() {
    if (realRegCreateKeyExW != nullptr)
        return 0; // already in place
    const HMODULE advapi = LoadLibraryW(L"advapi32.dll");
    if (advapi == nullptr)
        return 0;
    realRegCreateKeyExW = procedure<RegCreateKeyExWFunction>(advapi, "RegCreateKeyExW");
    if (realRegCreateKeyExW == nullptr)
        return 0;

    std::array<HMODULE, 1024> modules{};
    DWORD bytes = 0;
    if (!K32EnumProcessModules(GetCurrentProcess(),
                               modules.data(),
                               static_cast<DWORD>(sizeof(HMODULE) * modules.size()),
                               &bytes))
        return 0;
    const std::size_t count = std::min(modules.size(), std::size_t{bytes / sizeof(HMODULE)});
    int guarded = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (modules[i] != advapi && guardModule(modules[i]))
            ++guarded;
    return guarded;
}
