#pragma once

#include "app/instance_frames.h"

#include <QLocalSocket>
#include <QString>

#include <chrono>

/// A secondary's way to the primary. Thread: the one that made it; every function blocks, with a
/// limit, and is meant for processes that are about to end.
class InstanceClient final {
  public:
    enum class Peer { SameUser, AnyUser };

    InstanceClient(QString name, Peer peer);

    /// Connects and introduces itself, unless connected already.
    bool connectToPrimary(std::chrono::milliseconds timeout, const InitialFrame& introduction);
    /// True once the primary has acknowledged all of it.
    bool send(const QByteArray& message);
    /// Without limit: until the primary closes the connection.
    void waitForPrimaryExit();
    /// Why one of the functions above has failed, in the system's words.
    [[nodiscard]] QString errorText() const { return m_socket.errorString(); }

  private:
    bool connectSocket(std::chrono::milliseconds timeout);
    bool sendFrame(const QByteArray& body);
    bool sendPart(const QByteArray& bytes);

    const QString m_name;
    const Peer m_peer;
    QLocalSocket m_socket;
};

/// A random pause of 8 to 17 ms: processes that started together come apart.
void pauseRandomly();
