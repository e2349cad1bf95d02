#include "app/instance_client.h"

#include "base/log.h"
#include "platform/local_link.h"

#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QThread>

#include <algorithm>

namespace {
/// A connected primary answers from a thread of its own; longer means that it is stopped.
constexpr int kAnswerMs = 3000;
constexpr int kShortestPauseMs = 8;
constexpr int kLongestPauseMs = 17;

int left(const QDeadlineTimer& deadline) {
    return static_cast<int>(std::max<qint64>(deadline.remainingTime(), 1));
}
} // namespace

void pauseRandomly() {
    const int pause = QRandomGenerator::global()->bounded(kShortestPauseMs, kLongestPauseMs + 1);
    QThread::msleep(static_cast<unsigned long>(pause));
}

InstanceClient::InstanceClient(QString name, Peer peer) : m_name(std::move(name)), m_peer(peer) {}

bool InstanceClient::connectToPrimary(std::chrono::milliseconds timeout,
                                      const InitialFrame& introduction) {
    if (m_socket.state() == QLocalSocket::ConnectedState)
        return true;
    if (!connectSocket(timeout))
        return false;
    if (m_peer == Peer::SameUser && !isPeerSameUser(m_socket.socketDescriptor())) {
        qCWarning(lcApp, "SingleApplication: the primary's address belongs to another user");
        m_socket.abort();
        return false;
    }
    return sendFrame(initialBody(m_name, introduction));
}

bool InstanceClient::connectSocket(std::chrono::milliseconds timeout) {
    const QDeadlineTimer deadline(timeout);
    while (!deadline.hasExpired()) {
        pauseRandomly();
        if (m_socket.state() != QLocalSocket::ConnectingState)
            m_socket.connectToServer(localServerAddress(m_name), QIODevice::ReadWrite);
        if (m_socket.state() == QLocalSocket::ConnectingState)
            m_socket.waitForConnected(left(deadline));
        if (m_socket.state() == QLocalSocket::ConnectedState)
            return true;
    }
    return false;
}

bool InstanceClient::send(const QByteArray& message) {
    if (static_cast<quint64>(message.size()) > kLongestMessage) {
        qCWarning(lcApp, "SingleApplication: message too long bytes=%d", message.size());
        return false;
    }
    return m_socket.state() == QLocalSocket::ConnectedState && sendFrame(message);
}

bool InstanceClient::sendFrame(const QByteArray& body) {
    return sendPart(frameHeader(static_cast<quint64>(body.size()))) && sendPart(body);
}

bool InstanceClient::sendPart(const QByteArray& bytes) {
    const QDeadlineTimer deadline(kAnswerMs);
    m_socket.write(bytes);
    m_socket.flush();
    while (m_socket.bytesToWrite() > 0)
        if (deadline.hasExpired() || !m_socket.waitForBytesWritten(left(deadline)))
            return false;
    while (m_socket.bytesAvailable() == 0)
        if (deadline.hasExpired() || !m_socket.waitForReadyRead(left(deadline)))
            return false;
    char answer = 0;
    return m_socket.getChar(&answer);
}

void InstanceClient::waitForPrimaryExit() {
    if (m_socket.state() == QLocalSocket::ConnectedState)
        m_socket.waitForDisconnected(-1);
}
