#include "support/test_station.h"

#include "support/system.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QMutex>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <future>
#include <mutex>
#include <vector>

namespace {

constexpr int kTickMs = 10;
constexpr qint64 kMostPerTick = 256 * 1024;
constexpr qint64 kSocketBacklog = 512 * 1024;

struct Shared {
    mutable QMutex mutex; ///< guards all below
    StationScript script;
    QVector<ServedConnection> served;
    bool isAudioKept = true;
    qint64 resumeAt =
        0; ///< where a continuing connection begins, in bytes of the endless programme
};

/// The endless programme: tracks laid end to end.
class Programme {
  public:
    explicit Programme(const StationScript& script) : m_script(script) {
        for (const StationTrack& track : script.tracks)
            m_length += track.audio.size();
    }

    [[nodiscard]] bool isOver(qint64 at) const {
        return m_length == 0 || (!m_script.isLooped && at >= m_length);
    }

    /// At most `most` bytes from `at`, never over a track's end.
    [[nodiscard]] QByteArray read(qint64 at, qint64 most) const {
        const auto [track, offset] = find(at);
        return m_script.tracks.at(track).audio.mid(static_cast<int>(offset),
                                                   static_cast<int>(most));
    }

    [[nodiscard]] QByteArray titleAt(qint64 at) const {
        return m_script.tracks.at(find(at).first).title;
    }

    /// True where the track that holds byte `at` is not the one that holds byte `at - 1`, or is
    /// another round of it.
    [[nodiscard]] qint64 trackNumber(qint64 at) const {
        return at / m_length * m_script.tracks.size() + find(at).first;
    }

  private:
    [[nodiscard]] QPair<int, qint64> find(qint64 at) const {
        qint64 rest = at % m_length;
        for (int n = 0; n < m_script.tracks.size(); ++n) {
            if (rest < m_script.tracks.at(n).audio.size())
                return {n, rest};
            rest -= m_script.tracks.at(n).audio.size();
        }
        return {0, 0};
    }

    StationScript m_script;
    qint64 m_length = 0;
};

QByteArray titleBlock(const QByteArray& title) {
    const QByteArray text = "StreamTitle='" + title + "';";
    const int units = std::min(255, (text.size() + 15) / 16);
    QByteArray block(1, static_cast<char>(units));
    block += text.left(units * 16);
    block += QByteArray(units * 16 + 1 - block.size(), '\0');
    return block;
}

} // namespace

/// One listener of the station.
class StationConnection final : public QObject {
  public:
    StationConnection(QTcpSocket* socket, Shared& shared, int index)
        : m_socket(socket), m_shared(shared), m_index(index), m_script(shared.script),
          m_programme(m_script) {
        m_socket->setParent(this);
        m_position = m_script.continues ? m_shared.resumeAt : 0;
        connect(m_socket, &QTcpSocket::readyRead, this, [this] { readRequest(); });
        connect(m_socket, &QTcpSocket::disconnected, this, [this] { ended(); });
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] { tick(); });
    }

    void close() { m_socket->disconnectFromHost(); }

    void reset() {
        test_system::makeCloseReset(m_socket->socketDescriptor());
        m_socket->abort();
    }

  private:
    void readRequest() {
        m_request += m_socket->readAll();
        if (m_script.page) {
            answerPages();
            return;
        }
        if (m_isAnswered || !m_request.contains("\r\n\r\n") || m_script.isSilent)
            return;
        m_isAnswered = true;
        record([this](ServedConnection& log) { log.request = m_request; });
        QTimer::singleShot(m_script.answerDelay, this, [this] { answer(); });
    }

    void answerPages() {
        constexpr int kEndBytes = 4;
        for (int end = 0; (end = m_request.indexOf("\r\n\r\n")) >= 0;) {
            const QByteArray request = m_request.left(end + kEndBytes);
            m_request.remove(0, request.size());
            record([&request](ServedConnection& log) { log.request += request; });
            m_socket->write(m_script.page(request));
        }
    }

    void answer() {
        if (m_script.isServedOnce && m_index > 0) {
            close();
            return;
        }
        if (!m_script.rawAnswer.isEmpty() || !m_script.rawPieces.isEmpty()) {
            answerRaw();
            return;
        }
        m_hasTitles = m_script.metaint > 0 && m_request.toLower().contains("icy-metadata: 1");
        QByteArray headers = m_script.isOldIcy ? "ICY 200 OK\r\n" : "HTTP/1.0 200 OK\r\n";
        headers +=
            "Content-Type: " + m_script.contentType + "\r\nicy-name: Test Station\r\nicy-br: " +
            QByteArray::number(m_script.bytesPerSecond * 8 / 1000) + "\r\n" + m_script.extraHeaders;
        if (m_hasTitles)
            headers += "icy-metaint: " + QByteArray::number(m_script.metaint) + "\r\n";
        m_socket->write(headers + "\r\n");
        m_clock.start();
        m_timer.start(kTickMs);
        tick();
    }

    void answerRaw() {
        m_socket->write(m_script.rawAnswer);
        if (m_script.rawPieces.isEmpty() && m_script.rawForEver.isEmpty()) {
            close();
            return;
        }
        m_timer.disconnect(this);
        connect(&m_timer, &QTimer::timeout, this, [this] { rawTick(); });
        m_timer.start(m_script.rawForEver.isEmpty() ? 1 : kTickMs);
    }

    void rawTick() {
        if (m_nextPiece < m_script.rawPieces.size()) {
            m_socket->write(m_script.rawPieces.at(m_nextPiece++));
            m_socket->flush();
        } else if (m_script.rawForEver.isEmpty()) {
            close();
        } else {
            while (m_socket->bytesToWrite() < kSocketBacklog)
                m_socket->write(m_script.rawForEver);
        }
    }

    [[nodiscard]] qint64 allowance() const {
        if (m_script.speed <= 0)
            return m_sent + kMostPerTick;
        return m_script.burst +
               static_cast<qint64>(static_cast<double>(m_clock.elapsed()) *
                                   m_script.bytesPerSecond * m_script.speed / 1000);
    }

    /// The first byte count of the connection at which something else than audio happens.
    [[nodiscard]] qint64 nextFault() const {
        qint64 nearest = -1;
        for (const qint64 at : {m_script.stallAt, m_script.closeAt, m_script.resetAt}) {
            if (at >= 0 && (nearest < 0 || at < nearest))
                nearest = at;
        }
        return nearest;
    }

    void tick() {
        qint64 budget = std::min(allowance() - m_sent, kMostPerTick);
        while (budget > 0 && m_socket->state() == QAbstractSocket::ConnectedState) {
            if (m_socket->bytesToWrite() > kSocketBacklog)
                return;
            if (m_programme.isOver(m_position)) {
                close();
                return;
            }
            const qint64 fault = nextFault();
            if (fault >= 0 && m_sent >= fault) {
                fail(fault);
                return;
            }
            qint64 most = budget;
            if (fault >= 0)
                most = std::min(most, fault - m_sent);
            if (m_hasTitles)
                most = std::min<qint64>(most, m_script.metaint - m_sinceTitle);
            if (m_script.chunk > 0)
                most = std::min<qint64>(most, m_script.chunk);
            budget -= send(most);
        }
    }

    qint64 send(qint64 most) {
        const QByteArray audio = m_programme.read(m_position, most);
        m_socket->write(audio);
        m_position += audio.size();
        m_sent += audio.size();
        m_sinceTitle += audio.size();
        record([this, &audio](ServedConnection& log) {
            log.audioBytes += audio.size();
            if (m_shared.isAudioKept)
                log.audio += audio;
            m_shared.resumeAt = m_position;
        });
        if (m_hasTitles && m_sinceTitle == m_script.metaint)
            sendTitle();
        if (m_script.chunk > 0)
            m_socket->flush();
        return audio.size();
    }

    void sendTitle() {
        m_sinceTitle = 0;
        if (m_programme.isOver(m_position)) {
            m_socket->write(QByteArray(1, '\0'));
            return;
        }
        const qint64 track = m_programme.trackNumber(m_position);
        if (track == m_titledTrack) {
            m_socket->write(QByteArray(1, '\0'));
            return;
        }
        m_titledTrack = track;
        const QByteArray title = m_programme.titleAt(m_position);
        m_socket->write(titleBlock(title));
        record([this, &title](ServedConnection& log) { log.titles.append({m_sent, title}); });
    }

    void fail(qint64 at) {
        if (at == m_script.stallAt) {
            m_timer.stop();
        } else if (at == m_script.resetAt) {
            m_socket->flush();
            // what was sent must arrive before the reset overtakes it
            m_timer.stop();
            QTimer::singleShot(200, this, [this] { reset(); });
        } else {
            close();
        }
    }

    void ended() {
        m_timer.stop();
        record([](ServedConnection& log) { log.isOpen = false; });
        deleteLater();
    }

    template <typename Change>
    void record(Change change) {
        const QMutexLocker lock(&m_shared.mutex);
        change(m_shared.served[m_index]);
    }

    QTcpSocket* m_socket;
    Shared& m_shared;
    const int m_index;
    const StationScript m_script;
    const Programme m_programme;
    QByteArray m_request;
    bool m_isAnswered = false;
    bool m_hasTitles = false;
    qint64 m_position = 0; ///< in the endless programme
    qint64 m_sent = 0;     ///< audio bytes of this connection
    int m_sinceTitle = 0;
    qint64 m_titledTrack = -1;
    int m_nextPiece = 0;
    QElapsedTimer m_clock;
    QTimer m_timer;
};

struct TestStation::Private {
    Shared shared;
    QThread thread;
    QObject* context = new QObject; ///< lives on the thread
    QTcpServer* server = nullptr;   ///< child of context
    quint16 port = 0;

    void accept() {
        while (QTcpSocket* socket = server->nextPendingConnection()) {
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            const QMutexLocker lock(&shared.mutex);
            shared.served.append(ServedConnection{});
            auto* connection = new StationConnection(socket, shared, shared.served.size() - 1);
            connection->setParent(context);
        }
    }

    std::mutex
        jobMutex; ///< guards the jobs; unlike an event it orders the threads for the sanitizer
    std::vector<std::function<void()>> jobs;

    void runJobs() {
        std::vector<std::function<void()>> due;
        {
            const std::lock_guard lock(jobMutex);
            due.swap(jobs);
        }
        for (const auto& job : due)
            job();
    }

    /// Runs a call on the station's thread and waits for it.
    template <typename Call>
    void onThread(Call call) {
        std::promise<void> done;
        {
            const std::lock_guard lock(jobMutex);
            jobs.emplace_back([&call, &done] {
                call();
                done.set_value();
            });
        }
        QMetaObject::invokeMethod(
            context, [this] { runJobs(); }, Qt::QueuedConnection);
        done.get_future().wait();
    }

    template <typename Call>
    void forEachConnection(Call call) {
        onThread([this, call] {
            const auto children = context->children();
            for (QObject* child : children) {
                if (auto* connection = dynamic_cast<StationConnection*>(child))
                    call(*connection);
            }
        });
    }
};

TestStation::TestStation() : m_private(std::make_unique<Private>()) {
    m_private->context->moveToThread(&m_private->thread);
    QObject::connect(
        &m_private->thread, &QThread::finished, m_private->context, &QObject::deleteLater);
    m_private->thread.start();
}

TestStation::~TestStation() {
    m_private->thread.quit();
    m_private->thread.wait();
}

void TestStation::setScript(const StationScript& script) {
    const QMutexLocker lock(&m_private->shared.mutex);
    m_private->shared.script = script;
}

void TestStation::setAudioKept(bool isKept) {
    const QMutexLocker lock(&m_private->shared.mutex);
    m_private->shared.isAudioKept = isKept;
}

bool TestStation::listen(quint16 port) {
    bool isOk = false;
    m_private->onThread([this, port, &isOk] {
        if (m_private->server == nullptr) {
            m_private->server = new QTcpServer(m_private->context);
            QObject::connect(m_private->server,
                             &QTcpServer::newConnection,
                             m_private->context,
                             [this] { m_private->accept(); });
        }
        isOk =
            m_private->server->listen(QHostAddress::LocalHost, port != 0 ? port : m_private->port);
        if (isOk)
            m_private->port = m_private->server->serverPort();
    });
    return isOk;
}

void TestStation::stopListening() {
    m_private->onThread([this] { m_private->server->close(); });
}

void TestStation::closeConnections() {
    m_private->forEachConnection([](StationConnection& connection) { connection.close(); });
}

void TestStation::resetConnections() {
    m_private->forEachConnection([](StationConnection& connection) { connection.reset(); });
}

quint16 TestStation::port() const {
    return m_private->port;
}

QString TestStation::url(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1%2").arg(port()).arg(path);
}

QVector<ServedConnection> TestStation::served() const {
    const QMutexLocker lock(&m_private->shared.mutex);
    return m_private->shared.served;
}

QVector<StationTrack> tracksFromFiles(const QStringList& paths) {
    QVector<StationTrack> tracks;
    for (const QString& path : paths) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            tracks.append({file.readAll(), QFileInfo(path).completeBaseName().toUtf8()});
    }
    return tracks;
}
