#include "platform/crash_report.h"

#include "platform/crash_text.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <windows.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>

namespace {
constexpr std::size_t kPathLength = 4096;
constexpr int kMostFrames = 64;

// Filled before the handler is installed and only read by it.
std::array<wchar_t, kPathLength> g_path{};
std::array<char, 64> g_version{};
LPTOP_LEVEL_EXCEPTION_FILTER g_before = nullptr;
bool g_isInstalled = false;

void put(HANDLE file, const CrashText& text) {
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

/// "0x1234 Qt5Core.dll+0x34".
void putFrame(HANDLE file, DWORD64 address) {
    CrashText line;
    line.text("  ").hex(address);
    HMODULE module = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(address),
                           &module)) {
        std::array<char, MAX_PATH> name{};
        GetModuleFileNameA(module, name.data(), static_cast<DWORD>(name.size() - 1));
        const char* slash = std::strrchr(name.data(), '\\');
        line.text(" ").text(slash != nullptr ? slash + 1 : name.data()).text("+");
        line.hex(address - reinterpret_cast<DWORD64>(module));
    }
    put(file, line.text("\n"));
}

/// Walks the frames by the unwind tables that every 64-bit function has.
void putStack(HANDLE file, CONTEXT context) {
    for (int n = 0; n < kMostFrames && context.Rip != 0; ++n) {
        putFrame(file, context.Rip);
        DWORD64 base = 0;
        PRUNTIME_FUNCTION function = RtlLookupFunctionEntry(context.Rip, &base, nullptr);
        if (function == nullptr) { // a leaf: the return address lies on top of the stack
            if (n > 0 || IsBadReadPtr(reinterpret_cast<void*>(context.Rsp), sizeof(DWORD64)))
                return;
            std::memcpy(&context.Rip, reinterpret_cast<void*>(context.Rsp), sizeof context.Rip);
            context.Rsp += sizeof(DWORD64);
            continue;
        }
        void* handlerData = nullptr;
        DWORD64 establisher = 0;
        RtlVirtualUnwind(UNW_FLAG_NHANDLER,
                         base,
                         context.Rip,
                         function,
                         &context,
                         &handlerData,
                         &establisher,
                         nullptr);
    }
}

void writeReport(const CrashText& fault, const CONTEXT& context) {
    const HANDLE file = CreateFileW(g_path.data(),
                                    FILE_APPEND_DATA,
                                    FILE_SHARE_READ,
                                    nullptr,
                                    OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL,
                                    nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return;
    CrashText head;
    head.text("time: ").time(std::time(nullptr)).text("\nversion: ").text(g_version.data());
    put(file, head.text("\nfault: "));
    put(file, fault);
    put(file, CrashText().text("\nstack:\n"));
    putStack(file, context);
    put(file, CrashText().text("\n"));
    CloseHandle(file);
}

LONG WINAPI handleException(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    CrashText fault;
    fault.text("exception ").hex(record.ExceptionCode);
    if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2)
        fault.text(record.ExceptionInformation[0] == 0 ? ", reading " : ", writing ")
            .hex(record.ExceptionInformation[1]);
    writeReport(fault, *exception->ContextRecord);
    return g_before != nullptr ? g_before(exception) : EXCEPTION_CONTINUE_SEARCH;
}

/// The C library's abort() raises no exception of the system.
void handleAbort(int) {
    CONTEXT context{};
    RtlCaptureContext(&context);
    writeReport(CrashText().text("abort"), context);
}
} // namespace

void installCrashReport(const QString& path, const QString& version) {
    constexpr qint64 kFullBytes = 256 * 1024;
    if (QFileInfo(path).size() > kFullBytes)
        QFile::remove(path);
    const QString native = QDir::toNativeSeparators(path);
    g_path.fill(0);
    native.left(int{kPathLength - 1}).toWCharArray(g_path.data());
    std::strncpy(g_version.data(), version.toUtf8().constData(), g_version.size() - 1);
    if (g_isInstalled)
        return;
    g_isInstalled = true;
    g_before = SetUnhandledExceptionFilter(handleException);
    std::signal(SIGABRT, handleAbort);
}
