#pragma once

#include <QElapsedTimer>
#include <QThread>

#include <chrono>
#include <functional>

/// Blocks until it holds; false: it has not within the limit.
inline bool waitUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > limit.count())
            return false;
        QThread::msleep(20);
    }
    return true;
}
