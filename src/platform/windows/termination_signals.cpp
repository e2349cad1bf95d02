#include "platform/termination_signals.h"

#include <QMetaObject>

#include <windows.h>

#include <mutex>

namespace {
std::mutex g_mutex; // guards g_receiver
TerminationSignals* g_receiver = nullptr;

/// Runs on a thread of the system.
BOOL WINAPI passOn(DWORD event) {
    {
        const std::lock_guard lock(g_mutex);
        if (g_receiver == nullptr)
            return FALSE;
        QMetaObject::invokeMethod(
            g_receiver, &TerminationSignals::sig_terminate, Qt::QueuedConnection);
    }
    // Where this returns, the system ends the process: the window gets its time to complete files.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
        Sleep(15000);
    return TRUE;
}
} // namespace

struct TerminationSignals::Private {};

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent), m_private(std::make_unique<Private>()) {
    const std::lock_guard lock(g_mutex);
    g_receiver = this;
    SetConsoleCtrlHandler(passOn, TRUE);
}

TerminationSignals::~TerminationSignals() {
    SetConsoleCtrlHandler(passOn, FALSE);
    const std::lock_guard lock(g_mutex);
    g_receiver = nullptr;
}
