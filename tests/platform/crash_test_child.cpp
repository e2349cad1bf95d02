#include "platform/crash_report.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

/// crash_test_child REPORT access | abort | exception | none | wait: ends in the way that it is
/// told, with "wait" not before its input does.
int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    installCrashReport(arguments.value(1), QStringLiteral("1.2.3 test"));
    const QString kind = arguments.value(2);
    if (kind == QLatin1String("none"))
        return 0;
    if (kind == QLatin1String("wait"))
        return std::getchar() == EOF ? 0 : 1;
    if (kind == QLatin1String("access")) {
        volatile quintptr nowhere = 16; // volatile: the compiler sees no fault to warn of
        *reinterpret_cast<volatile int*>(quintptr{nowhere}) = 1;
    }
    if (kind == QLatin1String("abort"))
        std::abort();
    if (kind == QLatin1String("exception"))
        throw std::runtime_error("nobody catches this");
    std::puts("survived");
    return 0;
}
