#include "app/instance_server.h"

#include "base/log.h"
#include "platform/local_link.h"

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimerEvent>

#include <algorithm>

namespace {
constexpr int kPatienceMs = 5000; ///< for the rest of a frame
constexpr int kLateCheckMs = 1000;
constexpr int kBacklog = 128;
constexpr std::size_t kMostPeers = 64;
constexpr quint64 kLongestInitialBody = 4096;
constexpr qint64 kReadBuffer = 64 * 1024;
} // namespace

struct InstanceServer::Peer {
    QLocalSocket* socket = nullptr; // child of the server
    FrameReader reader;
    bool isIntroduced = false;
    InitialFrame introduction;
    QDeadlineTimer deadline{kPatienceMs};

    [[nodiscard]] bool isOwing() const { return !isIntroduced || reader.isInsideFrame(); }
};

InstanceServer::InstanceServer(QString name, Access access, Events events)
    : m_name(std::move(name)), m_access(access), m_events(std::move(events)) {}

InstanceServer::~InstanceServer() {
    // The sockets' last signals must not find half an object.
    for (const auto& peer : m_peers)
        peer->socket->disconnect(this);
}

QString InstanceServer::listen() {
    const QString address = localServerAddress(m_name);
    QLocalServer::removeServer(address);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(m_access == Access::SameUser ? QLocalServer::UserAccessOption
                                                            : QLocalServer::WorldAccessOption);
    m_server->setMaxPendingConnections(kBacklog);
    connect(m_server.get(), &QLocalServer::newConnection, this, &InstanceServer::acceptPeers);
    return m_server->listen(address) ? QString() : m_server->errorString();
}

void InstanceServer::acceptPeers() {
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        if (m_access == Access::SameUser && !isPeerSameUser(socket->socketDescriptor())) {
            qCWarning(lcApp, "SingleApplication: refused a connection of another user");
            socket->abort();
            socket->deleteLater();
            continue;
        }
        add(socket);
    }
}

void InstanceServer::add(QLocalSocket* socket) {
    makeRoom();
    auto peer = std::make_unique<Peer>();
    Peer& added = *peer;
    added.socket = socket;
    socket->setReadBufferSize(kReadBuffer);
    m_peers.push_back(std::move(peer));
    connect(socket, &QLocalSocket::readyRead, this, [this, &added] { read(added); });
    // Queued: a failing write says so in the middle of read().
    connect(
        socket,
        &QLocalSocket::disconnected,
        this,
        [this, socket] { forget(socket); },
        Qt::QueuedConnection);
    watchTime();
    if (socket->state() != QLocalSocket::ConnectedState)
        forget(socket);
    else
        read(added);
}

void InstanceServer::makeRoom() {
    if (m_peers.size() < kMostPeers)
        return;
    const auto silent = std::find_if(
        m_peers.begin(), m_peers.end(), [](const auto& peer) { return peer->isOwing(); });
    drop(silent == m_peers.end() ? *m_peers.front() : **silent, "too many connections");
}

void InstanceServer::read(Peer& peer) {
    for (;;) {
        const QByteArray bytes = peer.socket->readAll();
        if (bytes.isEmpty())
            return;
        if (!peer.isOwing())
            peer.deadline.setRemainingTime(kPatienceMs); // a new frame begins
        peer.reader.feed(bytes);
        watchTime();
        for (bool isMore = true; isMore;) {
            const quint64 limit = peer.isIntroduced ? kLongestMessage : kLongestInitialBody;
            switch (peer.reader.next(limit)) {
            case FrameReader::Step::NeedMore:
                isMore = false;
                break;
            case FrameReader::Step::TooLong:
                drop(peer, "frame too long");
                return;
            case FrameReader::Step::BodyRead:
                if (!takeBody(peer)) {
                    drop(peer, "wrong introduction");
                    return;
                }
                [[fallthrough]];
            case FrameReader::Step::HeaderRead:
                peer.socket->putChar(kAcknowledgement);
                peer.socket->flush();
                peer.deadline.setRemainingTime(kPatienceMs);
                break;
            }
        }
    }
}

bool InstanceServer::takeBody(Peer& peer) {
    if (peer.isIntroduced) {
        m_events.message(peer.introduction.instanceId, peer.reader.body());
        return true;
    }
    const std::optional<InitialFrame> frame = readInitialBody(peer.reader.body(), m_name);
    if (!frame)
        return false;
    peer.isIntroduced = true;
    peer.introduction = *frame;
    if (frame->type != ConnectionType::Reconnect)
        m_events.instanceStarted();
    return true;
}

void InstanceServer::watchTime() {
    if (m_lateTimer == 0)
        m_lateTimer = startTimer(kLateCheckMs);
}

void InstanceServer::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_lateTimer)
        checkLate();
}

void InstanceServer::checkLate() {
    std::vector<Peer*> late;
    bool isAnyOwing = false;
    for (const auto& peer : m_peers) {
        isAnyOwing = isAnyOwing || peer->isOwing();
        if (peer->isOwing() && peer->deadline.hasExpired())
            late.push_back(peer.get());
    }
    for (Peer* peer : late)
        drop(*peer, "no complete frame in time");
    // No wake-ups while nobody owes anything.
    if (!isAnyOwing) {
        killTimer(m_lateTimer);
        m_lateTimer = 0;
    }
}

void InstanceServer::drop(Peer& peer, const char* reason) {
    qCWarning(lcApp, "SingleApplication: closed a connection reason=%s", reason);
    QLocalSocket* socket = peer.socket;
    socket->disconnect(this);
    socket->abort();
    forget(socket);
}

void InstanceServer::forget(const QLocalSocket* socket) {
    const auto found = std::find_if(m_peers.begin(), m_peers.end(), [socket](const auto& peer) {
        return peer->socket == socket;
    });
    if (found == m_peers.end())
        return;
    (*found)->socket->deleteLater();
    m_peers.erase(found);
}
