#include "audio/frame_header.h"
#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"
#include "support/media_tools.h"

#include <QByteArrayList>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace BASS;

// A server of RTSP (RFC 2326) that sends MPEG audio (RFC 2250) within the connection itself.

namespace {

QList<QByteArray> framesOf(const QByteArray& mp3) {
    const auto* const data = reinterpret_cast<const std::uint8_t*>(mp3.constData());
    const auto size = static_cast<std::size_t>(mp3.size());
    QList<QByteArray> frames;
    for (std::size_t at = 0; at < size; at += static_cast<std::size_t>(frames.last().size())) {
        const auto frame = parseMpegFrame(data + at, size - at);
        if (!frame || frame->bytes > size - at)
            break;
        frames.append(mp3.mid(static_cast<int>(at), static_cast<int>(frame->bytes)));
    }
    return frames;
}

template <typename Number>
QByteArray bigEndian(Number value) {
    const Number big = qToBigEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&big), sizeof big);
}

/// An RTP packet (RFC 3550) of one frame, on channel 0 of the connection.
QByteArray packet(int number, const QByteArray& frame) {
    constexpr int kTicksAFrame = 90000 * 1152 / 44100;
    const QByteArray rtp = QByteArray("\x80\x0E", 2) + bigEndian(static_cast<quint16>(number)) +
                           bigEndian(static_cast<quint32>(number * kTicksAFrame)) +
                           bigEndian(quint32{7}) + QByteArray(4, '\0') + frame;
    return QByteArray("$\0", 2) + bigEndian(static_cast<quint16>(rtp.size())) + rtp;
}

QByteArray reply(const QByteArray& request, const QByteArray& lines, const QByteArray& body = {}) {
    const int at = request.indexOf("CSeq:");
    return "RTSP/1.0 200 OK\r\n" + request.mid(at, request.indexOf('\r', at) - at) + "\r\n" +
           lines + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

/// Answers until it is to play, then sends all and closes.
void serve(Connection& connection, const QList<QByteArray>& frames) {
    const QByteArray description = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=A station\r\n"
                                   "c=IN IP4 127.0.0.1\r\nt=0 0\r\nm=audio 0 RTP/AVP 14\r\n"
                                   "a=control:track\r\n";
    const struct {
        const char* method;
        QByteArray lines;
        QByteArray body;
    } answers[] = {
        {"OPTIONS", "Public: OPTIONS, DESCRIBE, SETUP, PLAY, TEARDOWN\r\n", {}},
        {"DESCRIBE", "Content-Type: application/sdp\r\n", description},
        {"SETUP", "Session: 1\r\nTransport: RTP/AVP/TCP;unicast;interleaved=0-1\r\n", {}},
        {"PLAY", "Session: 1\r\n", {}},
    };
    do {
        const QByteArray request = connection.request();
        for (const auto& answer : answers)
            if (request.startsWith(answer.method))
                connection.send(reply(request, answer.lines, answer.body));
        if (!request.startsWith("PLAY"))
            continue;
        for (int n = 0; n < frames.size(); ++n)
            connection.send(packet(n, frames[n]));
        return;
    } while (connection.readRequest());
}

} // namespace

TEST(Rtsp, PlaysEveryFrameOfAStation) {
    const QList<QByteArray> frames = framesOf(media::withoutId3(track(Track::Mp3)));
    ASSERT_GT(frames.size(), 100);
    LoopbackServer server([&frames](Connection& connection) { serve(connection, frames); });
    Listener listener;
    const HSTREAM stream =
        listener.open("rtsp" + server.url().substr(4), &AudioLibrary::WMA_StreamCreateURL);
    ASSERT_NE(stream, 0U) << listener.library().ErrorGetCode();
    BASS_CHANNELINFO info{};
    listener.library().ChannelGetInfo(stream, &info);
    EXPECT_EQ(info.ctype, BASS_CTYPE_STREAM_MP3);
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_NEAR(listener.syncs.back().seconds, kTrackSeconds, 0.1);
    EXPECT_TRUE(listener.bytes == QByteArrayList(frames).join());
}
