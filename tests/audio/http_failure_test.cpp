#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"
#include "support/system.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

using namespace BASS;

namespace {

int errorOf(const LoopbackServer::Script& script,
            Listener::Create create = &AudioLibrary::StreamCreateURL) {
    LoopbackServer server(script);
    Listener listener;
    listener.library().SetConfig(BASS_CONFIG_NET_TIMEOUT, 500);
    const HSTREAM stream = listener.open(server.url(), create);
    return stream != 0 ? BASS_OK : listener.library().ErrorGetCode();
}

LoopbackServer::Script sends(const QByteArray& bytes) {
    return [bytes](Connection& connection) { connection.send(bytes); };
}

} // namespace

TEST(HttpFailure, IsToldByTheRightCode) {
    const auto hang = [](Connection& connection) { connection.hang(); };
    const auto silent = [](Connection& connection) {
        connection.send(answer("HTTP/1.0 200 OK"));
        connection.hang();
    };
    const auto loops = sends(answer("HTTP/1.1 302 Found", {"Location: /x", "Content-Length: 0"}));
    const auto toFile = sends(answer("HTTP/1.1 302 Found", {"Location: file:///etc/hostname"}));
    const auto html = sends(answer("HTTP/1.0 200 OK", {"Content-Type: audio/mpeg"}) +
                            "<html><body>Station is full</body></html>");
    const auto mp3 = sends(answer("HTTP/1.0 200 OK") + track(Track::Mp3));
    EXPECT_EQ(errorOf(hang), BASS_ERROR_TIMEOUT);
    EXPECT_EQ(errorOf(silent), BASS_ERROR_TIMEOUT);
    EXPECT_EQ(errorOf([](Connection& connection) { connection.reset(); }), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(sends({})), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(sends(answer("HTTP/1.0 200 OK"))), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(sends(answer("HTTP/1.0 404 Not Found") + "gone")), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(sends(answer("HTTP/1.0 503 Busy") + track(Track::Mp3))), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(loops), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(html), BASS_ERROR_FILEFORM);
    EXPECT_NE(errorOf(toFile), BASS_OK);
    EXPECT_EQ(errorOf(mp3, &AudioLibrary::FLAC_StreamCreateURL), BASS_ERROR_FILEFORM);
    EXPECT_EQ(errorOf(mp3, &AudioLibrary::OPUS_StreamCreateURL), BASS_ERROR_FILEFORM);
    EXPECT_EQ(errorOf(sends(answer("HTTP/1.0 200 OK") + track(Track::Flac))), BASS_ERROR_FILEFORM);
}

TEST(HttpFailure, RefusedConnectionsFailToOpen) {
    std::string url;
    {
        LoopbackServer server([](Connection&) {});
        url = server.url();
    }
    Listener listener;
    EXPECT_EQ(listener.open(url), 0U);
    EXPECT_EQ(listener.library().ErrorGetCode(), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(listener.open("http://"), 0U);
    EXPECT_EQ(listener.open("gopher://127.0.0.1/"), 0U);
    EXPECT_EQ(listener.library().ErrorGetCode(), BASS_ERROR_ILLPARAM);
}

TEST(HttpFailure, AnErrorsHeadersReachTheEngine) {
    LoopbackServer server(sends(answer("HTTP/1.0 404 Not Found", {"X-Reason: gone"}) + "no"));
    Listener listener;
    EXPECT_EQ(listener.open(server.url()), 0U);
    EXPECT_TRUE(listener.headers.contains("404 Not Found\nX-Reason: gone"))
        << listener.headers.constData();
    EXPECT_TRUE(listener.bytes.isEmpty()); // an error's page is no audio
}

TEST(HttpFailure, ASilentConnectionEndsAfterTheReadTimeout) {
    LoopbackServer server([](Connection& connection) {
        connection.send(answer("HTTP/1.0 200 OK") + track(Track::Mp3).left(30000));
        connection.hang();
    });
    Listener listener;
    listener.library().SetConfig(BASS_CONFIG_NET_READTIMEOUT, 300);
    const HSTREAM stream = listener.open(server.url());
    ASSERT_NE(stream, 0U);
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_DOWNLOAD));
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END)); // what had come was heard
    EXPECT_EQ(listener.library().StreamGetFilePosition(stream, BASS_FILEPOS_CONNECTED), 0U);
    EXPECT_NEAR(listener.syncs.back().seconds, 30000 / 16000.0, 0.1);
}

TEST(HttpFailure, RubbishInTheMiddleIsSteppedOver) {
    for (const Track which : {Track::Mp3, Track::Adts, Track::Vorbis}) {
        SCOPED_TRACE(static_cast<int>(which));
        QByteArray audio = track(which);
        const int at = audio.size() / 2;
        const int damaged = audio.size() / 10;
        for (int n = 0; n < damaged; ++n)
            audio[at + n] = static_cast<char>(n * 7919 >> 3);
        LoopbackServer server(sends(answer("HTTP/1.0 200 OK") + audio));
        Listener listener;
        const HSTREAM stream = listener.open(server.url());
        ASSERT_NE(stream, 0U);
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        EXPECT_GT(listener.syncs.back().seconds, kTrackSeconds * 0.8);
    }
}

TEST(HttpFailure, CancelEndsAnAttemptAtEveryStage) {
    const LoopbackServer::Script scripts[] = {
        [](Connection& connection) { connection.hang(); },
        [](Connection& connection) {
            connection.send(answer("HTTP/1.0 200 OK"));
            connection.hang();
        },
        [](Connection& connection) {
            connection.send(answer("HTTP/1.0 200 OK") + track(Track::Mp3).left(600));
            connection.hang();
        },
    };
    for (const auto& script : scripts) {
        LoopbackServer server(script);
        Listener listener;
        auto created = std::async(std::launch::async, [&] { return listener.open(server.url()); });
        while (server.requests().empty())
            std::this_thread::yield();
        EXPECT_TRUE(listener.library().StreamCancel(&listener));
        // far below the limits of the connection itself (5 s, 60 s)
        ASSERT_EQ(created.wait_for(std::chrono::seconds(3)), std::future_status::ready);
        EXPECT_EQ(created.get(), 0U);
        EXPECT_FALSE(listener.library().StreamCancel(&listener));
    }
}

TEST(HttpFailure, ManyShortStreamsLeaveNothingBehind) {
    LoopbackServer server([](Connection& connection) {
        connection.send(answer("HTTP/1.0 200 OK") + track(Track::Mp3).left(8000));
        connection.hang();
    });
    Listener listener;
    const auto once = [&listener, &server] {
        const HSTREAM stream = listener.open(server.url());
        ASSERT_NE(stream, 0U);
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.library().StreamFree(stream));
        ASSERT_FALSE(listener.library().StreamFree(stream));
    };
    once();
    const int threads = test_system::threadCount();
    const int files = test_system::openFiles();
    for (int n = 0; n < 200; ++n)
        once();
    EXPECT_LE(settled(test_system::threadCount, threads + 2), threads + 2);
    EXPECT_LE(settled(test_system::openFiles, files + 4), files + 4);
}

TEST(HttpFailure, FreeingWaitsForCallbacksAndTheLibraryEndsWithStreams) {
    LoopbackServer server([](Connection& connection) {
        connection.send(answer("ICY 200 OK", {"icy-metaint: 500"}));
        const QByteArray audio = withTitles(track(Track::Mp3), 500, {{0, "A"}, {5000, "B"}});
        for (int at = 0; at < audio.size() && connection.send(audio.mid(at, 777)); at += 777) {
        }
        connection.hang();
    });
    for (int n = 0; n < 20; ++n) {
        Listener listener;
        const HSTREAM stream = listener.open(server.url());
        ASSERT_NE(stream, 0U);
        listener.library().ChannelPlay(stream, false);
        if (n % 2 == 0)
            listener.library().StreamFree(stream);
        // the listener goes with or without its stream: a late callback is a fault sanitizers see
    }
}
