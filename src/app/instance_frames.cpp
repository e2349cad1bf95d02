#include "app/instance_frames.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

namespace {
constexpr int kHeaderBytes = sizeof(quint64);
constexpr int kStreamVersion = QDataStream::Qt_5_6; // 17
} // namespace

QByteArray frameHeader(quint64 bodyBytes) {
    QByteArray header;
    QDataStream stream(&header, QIODevice::WriteOnly);
    stream.setVersion(kStreamVersion);
    stream << bodyBytes;
    return header;
}

QByteArray initialBody(const QString& serverName, const InitialFrame& frame) {
    QByteArray body;
    QDataStream stream(&body, QIODevice::WriteOnly);
    stream.setVersion(kStreamVersion);
    stream << serverName.toLatin1() << static_cast<quint8>(frame.type) << frame.instanceId;
    stream << qChecksum(body.constData(), static_cast<uint>(body.size()));
    return body;
}

std::optional<InitialFrame> readInitialBody(const QByteArray& body, const QString& serverName) {
    QDataStream stream(body);
    stream.setVersion(kStreamVersion);
    QByteArray name;
    quint8 type = 0;
    InitialFrame frame;
    quint16 checksum = 0;
    stream >> name >> type >> frame.instanceId;
    const auto checked = static_cast<uint>(stream.device()->pos());
    stream >> checksum;
    if (stream.status() != QDataStream::Ok || !stream.atEnd() || name != serverName.toLatin1() ||
        checksum != qChecksum(body.constData(), checked))
        return std::nullopt;
    frame.type = static_cast<ConnectionType>(type);
    switch (frame.type) {
    case ConnectionType::NewInstance:
    case ConnectionType::Secondary:
    case ConnectionType::Reconnect:
        return frame;
    case ConnectionType::Invalid:
        break;
    }
    return std::nullopt;
}

FrameReader::Step FrameReader::next(quint64 limit) {
    if (!m_expected) {
        if (m_bytes.size() < kHeaderBytes)
            return Step::NeedMore;
        m_expected = qFromBigEndian<quint64>(m_bytes.constData());
        m_bytes.remove(0, kHeaderBytes);
        return *m_expected > limit ? Step::TooLong : Step::HeaderRead;
    }
    const int length = static_cast<int>(*m_expected);
    if (m_bytes.size() < length)
        return Step::NeedMore;
    m_body = m_bytes.left(length);
    m_bytes.remove(0, length);
    m_expected.reset();
    return Step::BodyRead;
}
