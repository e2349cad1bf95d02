#include "platform/crash_report.h"

#include "platform/crash_text.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <ctime>

namespace {
constexpr std::array<int, 5> kSignals{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};

// Filled before the handler is installed and only read by it.
std::array<char, 4096> g_path{};
std::array<char, 64> g_version{};
std::array<struct sigaction, kSignals.size()> g_before{};
std::array<char, 65536> g_stack{}; // an overrun stack has no room for the handler
bool g_isInstalled = false;

const char* nameOf(int number) {
    switch (number) {
    case SIGSEGV:
        return "SIGSEGV, bad memory access";
    case SIGBUS:
        return "SIGBUS, bad memory access";
    case SIGILL:
        return "SIGILL, illegal instruction";
    case SIGFPE:
        return "SIGFPE, arithmetic fault";
    default:
        return "SIGABRT, abort";
    }
}

void writeReport(int number, const siginfo_t* info) {
    const int file = open(g_path.data(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0)
        return;
    CrashText head;
    head.text("time: ").time(std::time(nullptr)).text("\nversion: ").text(g_version.data());
    head.text("\nfault: ").text(nameOf(number));
    if (number != SIGABRT)
        head.text(" at ").hex(reinterpret_cast<std::uint64_t>(info->si_addr));
    head.text("\nstack:\n");
    // Nothing is left to be done where writing fails.
    [[maybe_unused]] auto written = write(file, head.data(), head.size());
    std::array<void*, 64> frames{};
    backtrace_symbols_fd(frames.data(), backtrace(frames.data(), int{frames.size()}), file);
    written = write(file, "\n", 1);
    close(file);
}

void handle(int number, siginfo_t* info, void*) {
    const int error = errno;
    writeReport(number, info);
    // What was there before (a sanitizer, the system's own end) has the last word: the signal comes
    // again as soon as this returns.
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        sigaction(kSignals[i], &g_before[i], nullptr);
    if (info->si_code <= 0) // sent, not a fault that repeats itself
        raise(number);
    errno = error;
}

template <std::size_t size>
void keep(std::array<char, size>& target, const QByteArray& text) {
    std::strncpy(target.data(), text.constData(), size - 1);
}
} // namespace

void installCrashReport(const QString& path, const QString& version) {
    constexpr qint64 kFullBytes = 256 * 1024;
    keep(g_path, QFile::encodeName(path));
    keep(g_version, version.toUtf8());
    if (QFileInfo(path).size() > kFullBytes)
        QFile::remove(path);
    if (g_isInstalled)
        return;
    g_isInstalled = true;
    // The first call loads a library, which a handler must not.
    std::array<void*, 1> frame{};
    backtrace(frame.data(), 1);
    stack_t stack{};
    stack.ss_sp = g_stack.data();
    stack.ss_size = g_stack.size();
    sigaltstack(&stack, nullptr);
    struct sigaction action {};
    action.sa_sigaction = handle;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        sigaction(kSignals[i], &action, &g_before[i]);
}
