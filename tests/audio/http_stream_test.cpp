#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <future>

using namespace BASS;

namespace {

LoopbackServer::Script sends(const QByteArray& bytes) {
    return [bytes](Connection& connection) { connection.send(bytes); };
}

QByteArray
icy(const QByteArray& audio, int metaint, const std::vector<std::pair<int, QByteArray>>& titles) {
    return answer("ICY 200 OK",
                  {"icy-name: Test station",
                   "content-type: audio/mpeg",
                   "icy-metaint: " + QByteArray::number(metaint)}) +
           withTitles(audio, metaint, titles);
}

} // namespace

TEST(HttpStream, PlaysEveryFormatToItsEnd) {
    using Library = AudioLibrary;
    struct Case {
        Track which;
        Listener::Create create;
        DWORD type;
    };
    const Case cases[] = {
        {Track::Mp3, &Library::StreamCreateURL, BASS_CTYPE_STREAM_MP3},
        {Track::Mp2, &Library::StreamCreateURL, BASS_CTYPE_STREAM_MP2},
        {Track::Adts, &Library::StreamCreateURL, BASS_CTYPE_STREAM_AAC},
        {Track::Vorbis, &Library::StreamCreateURL, BASS_CTYPE_STREAM_OGG},
        {Track::Opus, &Library::OPUS_StreamCreateURL, BASS_CTYPE_STREAM_OPUS},
        {Track::OggFlac, &Library::FLAC_StreamCreateURL, BASS_CTYPE_STREAM_FLAC_OGG},
        {Track::Flac, &Library::FLAC_StreamCreateURL, BASS_CTYPE_STREAM_FLAC},
        {Track::M4a, &Library::MP4_StreamCreateURL, BASS_CTYPE_STREAM_MP4},
        {Track::Wma, &Library::WMA_StreamCreateURL, BASS_CTYPE_STREAM_WMA},
        {Track::Wav, &Library::StreamCreateURL, BASS_CTYPE_STREAM_WAV_PCM},
        {Track::Aiff, &Library::StreamCreateURL, BASS_CTYPE_STREAM_AIFF},
        {Track::Mono, &Library::StreamCreateURL, BASS_CTYPE_STREAM_MP3},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(static_cast<int>(each.which));
        LoopbackServer server(sends(answer("HTTP/1.0 200 OK") + track(each.which)));
        Listener listener;
        const HSTREAM stream = listener.open(server.url(), each.create);
        ASSERT_NE(stream, 0U) << listener.library().ErrorGetCode();
        BASS_CHANNELINFO info{};
        listener.library().ChannelGetInfo(stream, &info);
        EXPECT_EQ(info.ctype, each.type);
        EXPECT_EQ(info.chans, each.which == Track::Mono ? 1U : 2U);
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        EXPECT_NEAR(listener.syncs.back().seconds, kTrackSeconds, 0.1);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_DOWNLOAD)); // some formats tell their end before
        EXPECT_TRUE(listener.bytes == track(each.which));
        EXPECT_EQ(listener.ends, 1);
    }
}

TEST(HttpStream, GivesTitlesTheirPlaceInBytesAndInTime) {
    const QByteArray& audio = track(Track::Mp3);
    const int metaint = 2000;
    LoopbackServer server(
        sends(icy(audio, metaint, {{0, "One"}, {20000, "Two"}, {32000, "Three"}})));
    Listener listener;
    const HSTREAM stream = listener.open(server.url());
    ASSERT_NE(stream, 0U);
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));

    EXPECT_TRUE(listener.bytes == audio);
    ASSERT_EQ(listener.titles.size(), 3U);
    const quint64 positions[] = {2000, 20000, 32000};
    const char* const texts[] = {
        "StreamTitle='One';", "StreamTitle='Two';", "StreamTitle='Three';"};
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(listener.titles[n].position, positions[n]);
        EXPECT_EQ(listener.titles[n].bytesBefore, positions[n]);
        EXPECT_EQ(listener.titles[n].text, texts[n]);
    }
    std::vector<Listener::Sync> heard;
    for (const auto& sync : listener.syncs)
        if (sync.type == BASS_SYNC_META)
            heard.push_back(sync);
    ASSERT_GE(heard.size(), 2U); // the first may have come with the stream itself
    const auto& two = heard[heard.size() - 2];
    EXPECT_EQ(two.meta, texts[1]);
    EXPECT_GE(two.seconds, 20000 / 16000.0 - 0.1); // not before it is heard; 128 kbit/s
    EXPECT_EQ(heard.back().meta, texts[2]);
    EXPECT_GE(heard.back().seconds, 32000 / 16000.0 - 0.1);
    const std::string headers = listener.headers.toStdString();
    EXPECT_NE(headers.find("icy-name: Test station"), std::string::npos) << headers;
    EXPECT_TRUE(server.requests().front().contains("Icy-MetaData: 1"));
}

TEST(HttpStream, TellsTheTitlesOfAChainedOggWhenTheyAreHeard) {
    const std::pair<Track, Track> chains[] = {{Track::Vorbis, Track::Vorbis},
                                              {Track::Opus, Track::Opus},
                                              {Track::OggFlac, Track::OggFlac},
                                              {Track::Vorbis, Track::Opus}};
    for (const auto& [first, second] : chains) {
        SCOPED_TRACE(static_cast<int>(first));
        const QByteArray audio = track(first, "First") + track(second, "Second");
        LoopbackServer server(sends(answer("HTTP/1.1 200 OK", {"Connection: close"}) + audio));
        Listener listener;
        const HSTREAM stream = listener.open(server.url());
        ASSERT_NE(stream, 0U);
        const char* const tags = listener.library().ChannelGetTags(stream, BASS_TAG_OGG);
        ASSERT_NE(tags, nullptr);
        bool hasTitle = false; // the encoder's own comment may stand beside it
        for (const char* entry = tags; *entry != '\0'; entry += qstrlen(entry) + 1)
            hasTitle = hasTitle || qstricmp(entry, "title=First") == 0;
        EXPECT_TRUE(hasTitle);
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        EXPECT_TRUE(listener.bytes == audio);
        EXPECT_NEAR(listener.syncs.back().seconds, 2 * kTrackSeconds, 0.1);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_OGG_CHANGE));
        for (const auto& sync : listener.syncs) {
            if (sync.type == BASS_SYNC_OGG_CHANGE) {
                EXPECT_GE(sync.seconds, kTrackSeconds - 0.1);
            }
        }
        EXPECT_EQ(listener.titles.size(), 2U);
    }
}

TEST(HttpStream, FollowsOggThatGoesOverToAnotherFormat) {
    for (const Track between : {Track::Mp3, Track::Adts}) {
        SCOPED_TRACE(static_cast<int>(between));
        const QByteArray audio = track(Track::Vorbis) + track(between) + track(Track::Opus);
        LoopbackServer server(sends(answer("HTTP/1.1 200 OK", {"Connection: close"}) + audio));
        Listener listener;
        const HSTREAM stream = listener.open(server.url());
        ASSERT_NE(stream, 0U);
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        EXPECT_TRUE(listener.bytes == audio);
        EXPECT_NEAR(listener.syncs.back().seconds, 3 * kTrackSeconds, 0.15);
    }
}

TEST(HttpStream, TakesOldAndOddAnswers) {
    const QByteArray& audio = track(Track::Mp3);
    QByteArray chunked;
    for (int at = 0; at < audio.size(); at += 1000) {
        const QByteArray chunk = audio.mid(at, 1000);
        chunked += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    const std::pair<const char*, QByteArray> answers[] = {
        {"ICY", answer("ICY 200 OK") + audio},
        {"no header at all", audio},
        {"chunked",
         answer("HTTP/1.1 200 OK", {"Transfer-Encoding: chunked"}) + chunked + "0\r\n\r\n"},
        {"senseless metaint", answer("HTTP/1.0 200 OK", {"icy-metaint: -1"}) + audio},
        {"wrong content type", answer("HTTP/1.0 200 OK", {"Content-Type: audio/aac"}) + audio},
    };
    for (const auto& [name, bytes] : answers) {
        SCOPED_TRACE(name);
        LoopbackServer server(sends(bytes));
        Listener listener;
        const HSTREAM stream = listener.open(server.url());
        ASSERT_NE(stream, 0U) << listener.library().ErrorGetCode();
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        EXPECT_TRUE(listener.bytes == audio);
    }
}

TEST(HttpStream, FollowsRedirectsAndKeepsTheLastHeaders) {
    LoopbackServer server([](Connection& connection) {
        if (connection.request().startsWith("GET /stream "))
            connection.send(answer("HTTP/1.1 302 Found",
                                   {"Location: /there", "icy-name: Wrong", "Content-Length: 0"}));
        else
            connection.send(answer("HTTP/1.0 200 OK", {"icy-name: Right"}) + track(Track::Mp3));
    });
    Listener listener;
    const HSTREAM stream = listener.open(server.url());
    ASSERT_NE(stream, 0U);
    EXPECT_STREQ(listener.library().ChannelGetTags(stream, BASS_TAG_ICY), "icy-name: Right");
    EXPECT_STREQ(listener.library().ChannelGetTags(stream, BASS_TAG_HTTP), "HTTP/1.0 200 OK");
}

TEST(HttpStream, StallsWhenBytesAreLateAndGoesOn) {
    std::promise<void> hasStalled;
    LoopbackServer server([&hasStalled](Connection& connection) {
        const QByteArray& audio = track(Track::Mp3);
        connection.send(answer("HTTP/1.0 200 OK") + audio.left(16000));
        hasStalled.get_future().wait();
        connection.send(audio.mid(16000));
    });
    Listener listener;
    const HSTREAM stream = listener.open(server.url());
    ASSERT_NE(stream, 0U);
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_STALL, 0));
    EXPECT_EQ(listener.library().ChannelIsActive(stream), BASS_ACTIVE_STALLED);
    hasStalled.set_value();
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_STALL, 1));
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_NEAR(listener.syncs.back().seconds, kTrackSeconds, 0.1); // nothing was lost
    std::vector<DWORD> order;
    for (const auto& sync : listener.syncs)
        order.push_back(sync.type);
    EXPECT_EQ(order.back(), BASS_SYNC_END);
}

TEST(HttpStream, TellsTheEndOfAConnectionToWhoAsksLate) {
    LoopbackServer server(sends(answer("HTTP/1.0 200 OK") + track(Track::Mp3)));
    Listener listener;
    AudioLibrary& library = listener.library();
    const HSTREAM stream = library.StreamCreateURL(server.url().c_str(), 0, 0, nullptr, nullptr);
    ASSERT_NE(stream, 0U);
    while (library.StreamGetFilePosition(stream, BASS_FILEPOS_CONNECTED) != 0)
        std::this_thread::yield();
    std::promise<void> told;
    const auto tell = [](HSYNC, DWORD, DWORD, void* user) {
        static_cast<std::promise<void>*>(user)->set_value(); // a second time would throw
    };
    library.ChannelSetSync(stream, BASS_SYNC_DOWNLOAD, 0, tell, &told);
    EXPECT_EQ(told.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    library.StreamFree(stream);
}

TEST(HttpStream, GivesTheRecorderEverythingWhileNobodyListens) {
    // more than the playback buffer holds, never played: a paused listener, a running recorder
    QByteArray audio;
    for (int n = 0; n < 40; ++n)
        audio += track(Track::Adts);
    LoopbackServer server(sends(answer("ICY 200 OK") + audio));
    Listener listener;
    listener.library().SetConfig(BASS_CONFIG_NET_BUFFER, 100);
    const HSTREAM stream = listener.open(server.url());
    ASSERT_NE(stream, 0U);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_DOWNLOAD));
    EXPECT_TRUE(listener.bytes == audio);
    listener.library().ChannelPlay(stream, false); // what is left plays from a frame boundary on
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_GT(listener.syncs.back().seconds, 20.0);
}

TEST(HttpStream, APausedStationGoesOnWhereItWasOrJumpsToLive) {
    for (const bool isToLive : {false, true}) {
        SCOPED_TRACE(isToLive);
        QByteArray audio;
        for (int n = 0; n < 20; ++n)
            audio += track(Track::Adts);
        std::promise<void> mayGoOn;
        LoopbackServer server([&audio, &mayGoOn](Connection& connection) {
            connection.send(answer("ICY 200 OK") + audio);
            mayGoOn.get_future().wait(); // the station stays
        });
        Listener listener;
        AudioLibrary& library = listener.library();
        const HSTREAM stream = listener.open(server.url());
        ASSERT_NE(stream, 0U);
        library.ChannelPlay(stream, false);
        ASSERT_TRUE(library.ChannelPause(stream));
        ASSERT_TRUE(listener.waitUntil([&] { return listener.bytes.size() == audio.size(); }));
        const auto seconds = [&library, stream] {
            return library.ChannelBytes2Seconds(stream, library.ChannelGetPosition(stream, 0));
        };
        const double pausedAt = seconds();
        ASSERT_TRUE(!isToLive || library.ChannelJumpToLive(stream));
        library.ChannelPlay(stream, false);
        mayGoOn.set_value();
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        // two seconds are kept, and what has been decoded counts as heard
        const double whole = 20 * kTrackSeconds;
        EXPECT_NEAR(seconds(), isToLive ? pausedAt + 3.0 : whole, 2.0);
    }
}

TEST(HttpStream, TellsAFilesTransferToWaitInstead) {
    QByteArray audio;
    for (int n = 0; n < 40; ++n)
        audio += track(Track::Adts);
    LoopbackServer server(
        sends(answer("HTTP/1.0 200 OK", {"Content-Length: " + QByteArray::number(audio.size())}) +
              audio));
    Listener listener;
    listener.library().SetConfig(BASS_CONFIG_NET_BUFFER, 100);
    const HSTREAM stream = listener.open(server.url());
    ASSERT_NE(stream, 0U);
    EXPECT_EQ(listener.library().StreamGetFilePosition(stream, BASS_FILEPOS_END),
              static_cast<QWORD>(audio.size()));
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_TRUE(listener.bytes == audio);
    EXPECT_NEAR(listener.syncs.back().seconds, 40 * kTrackSeconds, 3.0); // all of it was heard
}
