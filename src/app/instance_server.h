#pragma once

#include "app/instance_frames.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QLocalServer;
class QLocalSocket;

/// Takes messages of other instances in on behalf of the primary. A peer that sends nonsense, too
/// much or too slowly is cut off and logged; it never keeps the others waiting.
/// Thread: lives on the thread of InstanceServerThread; all functions there. Owner: that thread.
/// Life: listen() once.
class InstanceServer final : public QObject {
    Q_OBJECT

  public:
    enum class Access { SameUser, AllUsers };

    /// Called on the server's thread.
    struct Events {
        std::function<void()> instanceStarted;
        std::function<void(quint32 instanceId, const QByteArray& message)> message;
    };

    InstanceServer(QString name, Access access, Events events);
    ~InstanceServer() override;

    /// Removes what a killed primary left of the socket. Empty: it listens; else why not.
    QString listen();

  private:
    struct Peer;

    void acceptPeers();
    void add(QLocalSocket* socket);
    void read(Peer& peer);
    bool takeBody(Peer& peer);
    void watchTime();
    void checkLate();
    void drop(Peer& peer, const char* reason);
    void forget(const QLocalSocket* socket);
    void makeRoom();

    const QString m_name;
    const Access m_access;
    const Events m_events;
    std::unique_ptr<QLocalServer> m_server;
    std::vector<std::unique_ptr<Peer>> m_peers; // oldest first
    int m_lateTimer = 0;

  protected:
    void timerEvent(QTimerEvent* event) override;
};
