#include "support/tool_run.h"

#include <QProcess>

ToolOutput runTool(const QString& program, const QStringList& arguments, const QByteArray& input) {
    constexpr int kStartMs = 20000;
    constexpr int kRunMs = 120000;
    // QProcess copies the process by a system call that the thread sanitizer does not see: a lock
    // that another thread of ours holds inside the sanitizer just then stays locked in the copy,
    // which never becomes the tool. It has done nothing yet, so another is started in its place.
    for (int attempt = 0; attempt < 3; ++attempt) {
        QProcess process;
        process.start(program, arguments);
        if (!process.waitForStarted(kStartMs)) {
            if (process.error() == QProcess::FailedToStart)
                return {{}, process.errorString().toUtf8(), false};
            process.kill();
            process.waitForFinished(kStartMs);
            continue;
        }
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(kRunMs))
            return {{}, qPrintable(program + QStringLiteral(" does not end")), false};
        const bool isOk = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
        return {process.readAllStandardOutput(), process.readAllStandardError(), isOk};
    }
    return {{}, qPrintable(program + QStringLiteral(" does not start")), false};
}
