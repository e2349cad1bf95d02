#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// What instances say to each other over the local socket. Each frame is a header (the length of
// the body, 64 bits), answered by one byte, and the body, answered by another. Numbers as
// QDataStream version 17 writes them (big-endian).

enum class ConnectionType : quint8 { Invalid = 0, NewInstance = 1, Secondary = 2, Reconnect = 3 };

/// Introduces a connection.
struct InitialFrame {
    ConnectionType type = ConnectionType::Invalid;
    quint32 instanceId = 0;
};

/// Longer messages are refused; no system lets a command line grow so long.
constexpr quint64 kLongestMessage = 4 * 1024 * 1024;
constexpr char kAcknowledgement = '\n';

QByteArray frameHeader(quint64 bodyBytes);
QByteArray initialBody(const QString& serverName, const InitialFrame& frame);
/// Nothing where name, type or checksum are not right.
std::optional<InitialFrame> readInitialBody(const QByteArray& body, const QString& serverName);

/// Takes the bytes of one peer apart, in any chunking. Thread: a plain value.
class FrameReader {
  public:
    enum class Step {
        NeedMore,
        HeaderRead, ///< to be acknowledged
        BodyRead,   ///< to be acknowledged; body() is whole
        TooLong,    ///< the peer announces more than the limit
    };

    void feed(const QByteArray& bytes) { m_bytes += bytes; }
    Step next(quint64 limit);
    /// Valid after BodyRead until the next call.
    [[nodiscard]] QByteArray body() const { return m_body; }
    /// The peer owes the rest of a frame.
    [[nodiscard]] bool isInsideFrame() const { return m_expected || !m_bytes.isEmpty(); }

  private:
    QByteArray m_bytes;
    QByteArray m_body;
    std::optional<quint64> m_expected; ///< bytes of the body, once the header is read
};
