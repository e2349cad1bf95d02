#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

using namespace BASS;

namespace {

QByteArray littleEndian(int value, int bytes) {
    QByteArray out;
    for (int n = 0; n < bytes; ++n)
        out += static_cast<char>(value >> (8 * n) & 0xFF);
    return out;
}

/// A chunk of Microsoft's streaming over HTTP: type, length, sequence number, flags, length again.
QByteArray chunk(const char* type, int number, const QByteArray& body) {
    return type + littleEndian(body.size() + 8, 2) + littleEndian(number, 4) +
           QByteArray(2, '\x0C') + littleEndian(body.size() + 8, 2) + body;
}

/// The header goes to who asks for it, header and packets to who asks to play.
LoopbackServer::Script streams(const QByteArray& file) {
    return [file](Connection& connection) {
        // the data object's own head of 50 bytes belongs to the header
        const QByteArray dataObject = QByteArray::fromHex("3626B2758E66CF11A6D900AA0062CE6C");
        const int header = file.indexOf(dataObject) + 50;
        // the packet size stands in the file properties
        const QByteArray properties = QByteArray::fromHex("A1DCAB8C47A9CF118EE400C00C205365");
        const int sizeAt = file.indexOf(properties) + 92;
        const int size = static_cast<unsigned char>(file[sizeAt]) |
                         static_cast<unsigned char>(file[sizeAt + 1]) << 8;
        connection.send(answer("HTTP/1.0 200 OK",
                               {"Content-Type: application/x-mms-framed", "Pragma: client-id=7"}));
        connection.send(chunk("$H", 0, file.left(header)));
        if (!connection.request().contains("stream-switch-count"))
            return;
        int number = 0;
        for (int at = header; at + size <= file.size(); at += size)
            connection.send(chunk("$D", number++, file.mid(at, size)));
        connection.send(chunk("$E", 0, QByteArray(4, '\0')));
    };
}

std::string mmsUrl(const LoopbackServer& server) {
    return "mms" + server.url().substr(4);
}

} // namespace

TEST(Mms, PlaysWindowsMediaWithItsTitle) {
    LoopbackServer server(streams(track(Track::Wma)));
    Listener listener;
    const HSTREAM stream = listener.open(mmsUrl(server), &AudioLibrary::WMA_StreamCreateURL);
    ASSERT_NE(stream, 0U) << listener.library().ErrorGetCode();
    BASS_CHANNELINFO info{};
    listener.library().ChannelGetInfo(stream, &info);
    EXPECT_EQ(info.ctype, BASS_CTYPE_STREAM_WMA);
    EXPECT_STREQ(listener.library().ChannelGetTags(stream, BASS_TAG_WMA), "title=First");
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_NEAR(listener.syncs.back().seconds, kTrackSeconds, 0.3);
    EXPECT_TRUE(listener.bytes.startsWith(track(Track::Wma).left(16)));
}

TEST(Mms, FailsWithTheRightCodeAndCanBeCanceled) {
    Listener listener;
    listener.library().SetConfig(BASS_CONFIG_NET_TIMEOUT, 500);
    for (const char* const scheme : {"mms", "rtsp"}) {
        LoopbackServer silent([](Connection& connection) { connection.hang(); });
        const std::string url = scheme + silent.url().substr(4);
        EXPECT_EQ(listener.open(url, &AudioLibrary::WMA_StreamCreateURL), 0U);
        EXPECT_EQ(listener.library().ErrorGetCode(), BASS_ERROR_TIMEOUT) << scheme;
    }
    std::string gone;
    {
        LoopbackServer server([](Connection&) {});
        gone = server.url();
    }
    EXPECT_EQ(listener.open("mms" + gone.substr(4), &AudioLibrary::WMA_StreamCreateURL), 0U);
    EXPECT_EQ(listener.library().ErrorGetCode(), BASS_ERROR_FILEOPEN);

    LoopbackServer silent([](Connection& connection) { connection.hang(); });
    listener.library().SetConfig(BASS_CONFIG_NET_TIMEOUT, 60000);
    std::thread cancel([&listener, &silent] {
        while (silent.requests().empty())
            std::this_thread::yield();
        listener.library().StreamCancel(&listener);
    });
    EXPECT_EQ(listener.open(mmsUrl(silent), &AudioLibrary::WMA_StreamCreateURL), 0U);
    cancel.join();
}
