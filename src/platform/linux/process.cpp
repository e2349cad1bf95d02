#include "platform/process.h"

#include <QByteArray>

#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>

namespace {
/// Empty where there is no such file; nothing where looking is forbidden.
std::optional<QByteArray> executable(qint64 pid) {
    std::array<char, 4096> target{};
    const QByteArray link = "/proc/" + QByteArray::number(pid) + "/exe";
    const ssize_t length = readlink(link.constData(), target.data(), target.size());
    if (length < 0) {
        if (errno == EACCES || errno == EPERM)
            return std::nullopt;
        return QByteArray();
    }
    QByteArray path(target.data(), static_cast<int>(length));
    // The mark that the kernel sets behind the name of a file that an update has replaced.
    if (path.endsWith(" (deleted)"))
        path.chop(10);
    return path;
}
} // namespace

bool isThisProgramRunning(qint64 pid) {
    if (pid <= 0 || pid != static_cast<pid_t>(pid))
        return false;
    if (kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH)
        return false;
    const std::optional<QByteArray> theirs = executable(pid);
    return !theirs || (!theirs->isEmpty() && theirs == executable(getpid()));
}
