#pragma once

#include <QByteArray>
#include <QTcpServer>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class QTcpSocket;

/// What a scripted station does with one connection; runs on that connection's own thread.
class Connection {
  public:
    Connection(QTcpSocket& socket, const std::atomic<bool>& isStopping)
        : m_socket(socket), m_isStopping(isStopping) {}

    [[nodiscard]] const QByteArray& request() const { return m_request; }
    /// Waits for the first request, then for the next one.
    bool readRequest();
    /// False when the listener has gone.
    bool send(const QByteArray& bytes);
    /// Holds the connection open until the listener goes or the server stops.
    void hang();
    void reset();

  private:
    QTcpSocket& m_socket;
    const std::atomic<bool>& m_isStopping;
    QByteArray m_request;
    QByteArray m_received; ///< beyond the request
};

/// A station on the loopback interface that behaves as its script says. Thread: made and destroyed
/// on one; destroying it ends every connection.
class LoopbackServer {
  public:
    using Script = std::function<void(Connection&)>;

    explicit LoopbackServer(Script script);
    ~LoopbackServer();

    [[nodiscard]] std::string url(const std::string& path = "/stream") const;
    [[nodiscard]] std::vector<QByteArray> requests() const;

  private:
    void run();

    Script m_script;
    std::atomic<bool> m_isStopping{false};
    std::atomic<quint16> m_port{0};
    mutable std::mutex m_mutex; ///< guards m_requests
    std::vector<QByteArray> m_requests;
    std::vector<std::thread> m_connections;
    std::thread m_thread;
};

/// An answer's head: the status line and "name: value" lines.
QByteArray answer(const char* status, const std::vector<QByteArray>& lines = {});
/// `audio` with a title block behind every `metaint` bytes; titles: (first byte, text), in order.
QByteArray withTitles(const QByteArray& audio,
                      int metaint,
                      const std::vector<std::pair<int, QByteArray>>& titles);
