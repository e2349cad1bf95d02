#include "base/file_lock.h"

#include <QElapsedTimer>
#include <QLockFile>
#include <QThread>

namespace {
constexpr int kLockWaitMs = 5000;
constexpr int kLockPauseMs = 8;
} // namespace

// QLockFile's own waiting doubles its pauses up to seconds.
bool takeFileLock(QLockFile& lock) {
    QElapsedTimer waited;
    waited.start();
    while (!lock.tryLock(0)) {
        if (lock.error() != QLockFile::LockFailedError || waited.elapsed() > kLockWaitMs)
            return false;
        QThread::msleep(kLockPauseMs);
    }
    return true;
}
