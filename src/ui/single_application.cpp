#include "ui/single_application.h"

#include <QMetaMethod>

#include <chrono>

namespace QT_EXT {

SingleApplication::SingleApplication(int& argc,
                                     char** argv,
                                     bool allowSecondary,
                                     int options,
                                     int timeoutMs,
                                     const QStringList& userData)
    : QApplication(argc, argv),
      m_guard({allowSecondary, options, std::chrono::milliseconds(timeoutMs), userData}) {
    connect(&m_guard, &InstanceGuard::instanceStarted, this, &SingleApplication::instanceStarted);
}

bool SingleApplication::sendMessage(const QByteArray& message,
                                    int timeoutMs,
                                    InstanceGuard::AfterSend afterSend) {
    return m_guard.sendMessage(message, std::chrono::milliseconds(timeoutMs), afterSend);
}

void SingleApplication::connectNotify(const QMetaMethod& signal) {
    // Only now does somebody listen; until then the guard keeps the messages.
    if (signal == QMetaMethod::fromSignal(&SingleApplication::receivedMessage))
        connect(&m_guard,
                &InstanceGuard::receivedMessage,
                this,
                &SingleApplication::receivedMessage,
                Qt::UniqueConnection);
}

} // namespace QT_EXT
