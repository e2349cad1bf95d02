#include "audio/loopback_server.h"

#include <QTcpSocket>

#include <future>

namespace {

constexpr int kPollMs = 10;

class Listener final : public QTcpServer {
  public:
    std::function<void(qintptr)> accepted;

  protected:
    void incomingConnection(qintptr descriptor) override { accepted(descriptor); }
};

} // namespace

bool Connection::readRequest() {
    const QByteArray end = "\r\n\r\n";
    while (!m_received.contains(end)) {
        if (!m_socket.waitForReadyRead(kPollMs) &&
            (m_isStopping || m_socket.state() != QAbstractSocket::ConnectedState))
            return false;
        m_received += m_socket.readAll();
    }
    m_request = m_received.left(m_received.indexOf(end) + end.size());
    m_received.remove(0, m_request.size());
    return true;
}

bool Connection::send(const QByteArray& bytes) {
    m_socket.write(bytes);
    while (m_socket.bytesToWrite() > 0) {
        if (!m_socket.waitForBytesWritten(kPollMs) &&
            (m_isStopping || m_socket.state() != QAbstractSocket::ConnectedState))
            return false;
    }
    return true;
}

void Connection::hang() {
    while (!m_isStopping && m_socket.state() == QAbstractSocket::ConnectedState)
        m_socket.waitForReadyRead(kPollMs);
}

void Connection::reset() {
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.abort();
}

LoopbackServer::LoopbackServer(Script script) : m_script(std::move(script)) {
    std::promise<void> isUp;
    auto up = isUp.get_future();
    m_thread = std::thread([this, &isUp] {
        Listener server;
        server.accepted = [this](qintptr descriptor) {
            m_connections.emplace_back([this, descriptor] {
                QTcpSocket socket;
                socket.setSocketDescriptor(descriptor);
                Connection connection(socket, m_isStopping);
                if (connection.readRequest()) {
                    {
                        const std::lock_guard lock(m_mutex);
                        m_requests.push_back(connection.request());
                    }
                    m_script(connection);
                }
                socket.disconnectFromHost();
                if (socket.state() != QAbstractSocket::UnconnectedState)
                    socket.waitForDisconnected(kPollMs);
            });
        };
        server.listen(QHostAddress::LocalHost);
        m_port = server.serverPort();
        isUp.set_value();
        while (!m_isStopping)
            server.waitForNewConnection(kPollMs);
    });
    up.wait();
}

LoopbackServer::~LoopbackServer() {
    m_isStopping = true;
    m_thread.join();
    for (std::thread& connection : m_connections)
        connection.join();
}

std::string LoopbackServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

std::vector<QByteArray> LoopbackServer::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

QByteArray answer(const char* status, const std::vector<QByteArray>& lines) {
    QByteArray head = QByteArray(status) + "\r\n";
    for (const QByteArray& line : lines)
        head += line + "\r\n";
    return head + "\r\n";
}

QByteArray withTitles(const QByteArray& audio,
                      int metaint,
                      const std::vector<std::pair<int, QByteArray>>& titles) {
    QByteArray result;
    std::size_t next = 0;
    for (int at = 0; at < audio.size(); at += metaint) {
        result += audio.mid(at, metaint);
        if (at + metaint > audio.size())
            break;
        QByteArray text;
        if (next < titles.size() && titles[next].first <= at + metaint)
            text = "StreamTitle='" + titles[next++].second + "';";
        const int blocks = (text.size() + 15) / 16;
        result += static_cast<char>(blocks);
        result += text.leftJustified(blocks * 16, '\0');
    }
    return result;
}
