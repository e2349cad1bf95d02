#include "platform/program_arguments.h"

// The first declares what the second needs.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

QStringList programArguments(int argc, const char* const* argv) {
    QStringList arguments;
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide != nullptr) {
        for (int i = 0; i < count; ++i)
            arguments.append(QString::fromWCharArray(wide[i]));
        LocalFree(wide);
        return arguments;
    }
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}
