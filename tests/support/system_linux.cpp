#include "support/system.h"

#include <QDir>
#include <QFile>

#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

namespace test_system {

void makeCloseReset(qintptr socketDescriptor) {
    const linger now{1, 0};
    setsockopt(static_cast<int>(socketDescriptor), SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

qint64 readStandardInput(char* data, unsigned size) {
    return ::read(STDIN_FILENO, data, size);
}

void makeStandardStreamsBinary() {}

QStringList loadedLibraries(qint64 processId) {
    QFile maps(QStringLiteral("/proc/%1/maps").arg(processId)); // proc(5): the path comes last
    QStringList paths;
    if (maps.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : maps.readAll().split('\n')) {
            if (line.contains('/'))
                paths << QString::fromLocal8Bit(line.mid(line.indexOf('/')));
        }
    }
    paths.removeDuplicates();
    return paths;
}

bool askToEnd(qint64 processId) {
    return ::kill(static_cast<pid_t>(processId), SIGTERM) == 0;
}

int threadCount() {
    const QDir tasks(QStringLiteral("/proc/self/task"));
    return tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

int openFiles() {
    const QDir files(QStringLiteral("/proc/self/fd"));
    return files.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace test_system
