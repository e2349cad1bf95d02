#include "platform/termination_signals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace {
constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};
std::atomic<int> g_writeEnd{-1};

/// Signal handler: only what signal-safety(7) allows.
extern "C" void passOn(int) {
    const int saved = errno;
    const char byte = 1;
    const int end = g_writeEnd.load();
    if (end >= 0 && write(end, &byte, 1) < 0) {
        // A full pipe has a wish in it already.
    }
    errno = saved;
}
} // namespace

struct TerminationSignals::Private {
    std::array<int, 2> pipe{-1, -1};
    std::array<struct sigaction, kSignals.size()> before{};
    std::unique_ptr<QSocketNotifier> notifier;
};

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent), m_private(std::make_unique<Private>()) {
    if (pipe2(m_private->pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the signals keep their usual effect
    m_private->notifier =
        std::make_unique<QSocketNotifier>(m_private->pipe[0], QSocketNotifier::Read);
    connect(m_private->notifier.get(), &QSocketNotifier::activated, this, [this] {
        char bytes[16];
        while (read(m_private->pipe[0], bytes, sizeof bytes) > 0) {
        }
        emit sig_terminate();
    });
    g_writeEnd = m_private->pipe[1];
    struct sigaction action {};
    action.sa_handler = passOn;
    action.sa_flags = SA_RESTART;
    for (std::size_t n = 0; n < kSignals.size(); ++n)
        sigaction(kSignals[n], &action, &m_private->before[n]);
}

TerminationSignals::~TerminationSignals() {
    if (m_private->pipe[0] < 0)
        return;
    for (std::size_t n = 0; n < kSignals.size(); ++n)
        sigaction(kSignals[n], &m_private->before[n], nullptr);
    g_writeEnd = -1;
    m_private->notifier.reset();
    close(m_private->pipe[0]);
    close(m_private->pipe[1]);
}
