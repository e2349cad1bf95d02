#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"
#include "support/hls_station.h"
#include "support/media_tools.h"
#include "support/system.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace BASS;

namespace {

using Library = AudioLibrary;

QStringList codec(const char* text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

const QStringList kAac = codec("-c:a aac -b:a 96k");
const QStringList kMp3 = codec("-c:a libmp3lame -b:a 128k");
constexpr double kSeconds = 6.0;

QByteArray tone(const QStringList& how, const char* container) {
    return media::encodeTone({440, kSeconds, how, QString::fromLatin1(container), {}});
}

const QVector<HlsPiece>& aacPieces() {
    static const QVector<HlsPiece> pieces = hlsPieces(kAac, QStringLiteral("mpegts"), kSeconds);
    return pieces;
}

HSTREAM open(Listener& listener, const QString& url) {
    return listener.open(url.toStdString(), &Library::HLS_StreamCreateURL);
}

QList<QByteArray> commentsOf(const std::string& text) {
    return QByteArray::fromStdString(text).split('\0');
}

/// The file that a recorder would have written.
QString written(const QTemporaryDir& folder, const QByteArray& bytes) {
    QFile file(folder.filePath(QStringLiteral("stream")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
}

} // namespace

TEST(HlsStream, PlaysEveryKindOfSegmentToItsEnd) {
    const QByteArray adts = tone(kAac, "adts");
    const QByteArray mp3 = tone(kMp3, "mp3");
    HlsScript encrypted;
    encrypted.pieces = aacPieces();
    encrypted.key = "0123456789abcdef";
    HlsScript ranged;
    ranged.pieces = aacPieces();
    ranged.isRanged = true;
    HlsScript unranged = ranged;
    unranged.knowsRanges = false;
    const auto plain = [](const QVector<HlsPiece>& pieces) {
        HlsScript script;
        script.pieces = pieces;
        return script;
    };
    const struct {
        const char* what;
        HlsScript script;
        DWORD type;
    } cases[] = {
        {"AAC in TS", plain(aacPieces()), BASS_CTYPE_STREAM_AAC},
        {"MP3 in TS",
         plain(hlsPieces(kMp3, QStringLiteral("mpegts"), kSeconds)),
         BASS_CTYPE_STREAM_MP3},
        {"packed AAC", plain(packedPieces(adts, {"1", "2", "3", "4"})), BASS_CTYPE_STREAM_AAC},
        {"packed MP3", plain(packedPieces(mp3, {"1", "2", "3", "4"})), BASS_CTYPE_STREAM_MP3},
        {"AAC in fragments",
         plain(hlsPieces(kAac, QStringLiteral("fmp4"), kSeconds)),
         BASS_CTYPE_STREAM_AAC},
        {"FLAC in fragments",
         plain(hlsPieces(codec("-c:a flac -strict -2"), QStringLiteral("fmp4"), kSeconds)),
         BASS_CTYPE_STREAM_FLAC},
        {"encrypted", encrypted, BASS_CTYPE_STREAM_AAC},
        {"byte ranges", ranged, BASS_CTYPE_STREAM_AAC},
        {"byte ranges of a server that has none", unranged, BASS_CTYPE_STREAM_AAC},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const QTemporaryDir folder;
        const HlsStation station(c.script);
        Listener listener;
        const HSTREAM stream = open(listener, station.url());
        ASSERT_NE(stream, 0U) << listener.library().ErrorGetCode();
        BASS_CHANNELINFO info{};
        listener.library().ChannelGetInfo(stream, &info);
        EXPECT_EQ(info.ctype, c.type);
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        EXPECT_NEAR(listener.syncs.back().seconds, kSeconds, 0.1);
        EXPECT_EQ(listener.ends, 1);
        const QString file = written(folder, listener.bytes);
        EXPECT_EQ(media::decodeErrors(file), QString());
        EXPECT_NEAR(media::decodedSeconds(file), kSeconds, 0.1);
    }
}

TEST(HlsStream, TellsTitlesAndSegmentsWhenTheyAreHeard) {
    HlsScript script;
    script.pieces = packedPieces(tone(kAac, "adts"), {"One", "One", "Two"});
    script.pieces[1].info = "second";
    const HlsStation station(script);
    Listener listener;
    const HSTREAM stream = open(listener, station.url(QStringLiteral("/master.m3u8")));
    ASSERT_NE(stream, 0U);
    EXPECT_FALSE(station.paths().contains("/video.m3u8"));
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));

    std::vector<Listener::Title> titles;
    std::vector<Listener::Title> segments;
    for (const auto& title : listener.titles)
        (title.text.find('=') != std::string::npos ? titles : segments).push_back(title);
    ASSERT_EQ(titles.size(), 2U); // the repeated one is none
    EXPECT_TRUE(commentsOf(titles[0].text).contains("ARTIST=Artist"));
    EXPECT_TRUE(commentsOf(titles[1].text).contains("TITLE=Two"));
    const int tagBytes = id3Tag("Artist", "One").size();
    const int firstTwo = script.pieces[0].bytes.size() + script.pieces[1].bytes.size();
    EXPECT_EQ(titles[1].position, static_cast<quint64>(firstTwo - 2 * tagBytes));
    EXPECT_EQ(titles[1].bytesBefore, titles[1].position);
    ASSERT_EQ(segments.size(), 3U);
    EXPECT_NE(segments[1].text.find(",second"), std::string::npos);

    std::vector<double> heard;
    for (const auto& sync : listener.syncs) {
        if (sync.type == BASS_SYNC_HLS_SEGMENT)
            heard.push_back(sync.seconds);
    }
    ASSERT_GE(heard.size(), 2U);
    EXPECT_GE(heard.back(), 4.0 - 0.1);
}

TEST(HlsStream, FollowsALiveWindow) {
    HlsScript script;
    script.pieces = aacPieces();
    script.isLive = true;
    script.speed = 2;
    script.target = 1;
    script.missing = {5};
    const HlsStation station(script);
    Listener listener;
    const HSTREAM stream = open(listener, station.url());
    ASSERT_NE(stream, 0U) << listener.library().ErrorGetCode();
    EXPECT_EQ(listener.library().StreamGetFilePosition(stream, BASS_FILEPOS_END), 0U);
    listener.library().ChannelPlay(stream, false);
    QList<int> fetched;
    ASSERT_TRUE(listener.waitUntil([&station, &fetched] {
        fetched.clear();
        for (const QByteArray& path : station.paths()) {
            if (path.startsWith("/segment/"))
                fetched.append(path.mid(9, path.indexOf('?') - 9).toInt());
        }
        return fetched.contains(7);
    }));
    listener.library().StreamFree(stream);
    // three from the edge of four, then every one; what is missing is asked for twice
    EXPECT_EQ(fetched, (QList<int>{1, 2, 3, 4, 5, 5, 6, 7}));
    EXPECT_TRUE(station.paths().contains("/segment/1?a+b"));
    const QTemporaryDir folder;
    EXPECT_EQ(media::decodeErrors(written(folder, listener.bytes)), QString());
}

TEST(HlsStream, AnotherKindOfAudioIsAnotherConnection) {
    HlsScript script;
    script.pieces = aacPieces() + packedPieces(tone(kMp3, "mp3"), {"Advert", "Advert", "Advert"});
    script.pieces[aacPieces().size()].breaksOff = true;
    const HlsStation station(script);
    Listener listener;
    const HSTREAM stream = open(listener, station.url());
    ASSERT_NE(stream, 0U);
    listener.library().ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_NEAR(listener.syncs.back().seconds, 2 * kSeconds, 0.3);
    EXPECT_EQ(listener.ends, 2);
    EXPECT_TRUE(listener.headers.contains("audio/aac"));
    EXPECT_TRUE(listener.headers.contains("audio/mpeg"));
    EXPECT_EQ(listener.titles.back().position + 0,
              listener.titles.back().bytesBefore -
                  listener.titles[listener.titles.size() - 2].bytesBefore +
                  listener.titles[listener.titles.size() - 2].position);
}

TEST(HlsStream, FailsWithTheRightCode) {
    const auto errorOf = [](const LoopbackServer::Script& script) {
        LoopbackServer server(script);
        Listener listener;
        listener.library().SetConfig(BASS_CONFIG_NET_TIMEOUT, 500);
        const HSTREAM stream = listener.open(server.url(), &Library::HLS_StreamCreateURL);
        return stream != 0 ? BASS_OK : listener.library().ErrorGetCode();
    };
    const auto endless = [](Connection& connection) {
        while (connection.send(track(Track::Mp3)))
            ;
    };
    const auto sends = [](const QByteArray& bytes) {
        return
            [bytes](Connection& connection) { connection.send(answer("HTTP/1.0 200 OK") + bytes); };
    };
    const QByteArray head = "#EXTM3U\n#EXT-X-TARGETDURATION:1\n";
    const auto playlistOf = [&head](const QByteArray& body) {
        return [head, body](Connection& connection) {
            const bool isList = connection.request().startsWith("GET /stream");
            connection.send(
                answer("HTTP/1.0 200 OK") +
                (isList ? head + "#EXTINF:1,\na\n#EXTINF:1,\nb\n#EXT-X-ENDLIST\n" : body));
        };
    };
    ASSERT_FALSE(track(Track::Mp3).isEmpty());        // encoded before a server has to send it
    EXPECT_EQ(errorOf(endless), BASS_ERROR_FILEFORM); // at once, although it never ends
    EXPECT_EQ(errorOf(sends("<html>")), BASS_ERROR_FILEFORM);
    EXPECT_EQ(errorOf(sends("#EXTM3U\nhttp://host/stream\n")), BASS_ERROR_FILEFORM);
    EXPECT_EQ(errorOf(sends(head + "#EXT-X-ENDLIST\n")), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(sends(head + "#EXT-X-KEY:METHOD=SAMPLE-AES,URI=\"k\"\n#EXTINF:1,\na\n")),
              BASS_ERROR_CODEC);
    EXPECT_EQ(errorOf([](Connection& connection) { connection.hang(); }), BASS_ERROR_TIMEOUT);
    EXPECT_EQ(errorOf([](Connection& connection) {
                  connection.send(answer("HTTP/1.0 404 Not Found") + "no");
              }),
              BASS_ERROR_FILEOPEN);
    EXPECT_EQ(errorOf(playlistOf("<html>not found</html>")), BASS_ERROR_FILEFORM);
    EXPECT_EQ(errorOf(playlistOf("\x0B\x77 some Dolby frames")), BASS_ERROR_CODEC);
    // a master playlist that names itself
    EXPECT_EQ(errorOf(sends("#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nstream\n")),
              BASS_ERROR_FILEFORM);
}

/// Files of their own and ranges of a common one, in a folder whose name has to be escaped.
TEST(HlsStream, PlaysAPlaylistFromAFile) {
    const QTemporaryDir parent;
    const QDir folder(parent.filePath(QString::fromUtf8("50% M\xc3\xbcsik #1")));
    ASSERT_TRUE(QDir().mkpath(folder.path()));
    const auto write = [&folder](const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    };
    QByteArray list = "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXT-X-MEDIA-SEQUENCE:7\n";
    QByteArray common = "no audio";
    for (int n = 0; n < aacPieces().size(); ++n) {
        const QByteArray& bytes = aacPieces()[n].bytes;
        QByteArray name = "part " + QByteArray::number(n) + ".ts";
        list += "#EXTINF:2,\n";
        if (n % 2 == 0) {
            write(QString::fromLatin1(name), bytes);
        } else {
            name = "./all.ts";
            list += "#EXT-X-BYTERANGE:" + QByteArray::number(bytes.size()) + '@' +
                    QByteArray::number(common.size()) + '\n';
            common += bytes;
        }
        list += name + '\n';
    }
    write(QStringLiteral("all.ts"), common);
    const QString path = write(QStringLiteral("a list.m3u8"), list + "#EXT-X-ENDLIST\n");
    Listener listener;
    Library& library = listener.library();
    const HSTREAM stream = listener.openFile(path, &Library::HLS_StreamCreateFile);
    ASSERT_NE(stream, 0U) << library.ErrorGetCode();
    BASS_CHANNELINFO info{};
    library.ChannelGetInfo(stream, &info);
    EXPECT_EQ(info.ctype, BASS_CTYPE_STREAM_AAC);
    library.ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_NEAR(listener.syncs.back().seconds, kSeconds, 0.1);
    for (const QString& other : {path + QLatin1Char('x'), folder.path()}) {
        EXPECT_EQ(library.HLS_StreamCreateFile(other.utf16(), BASS_UNICODE), 0U);
        EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_FILEOPEN);
    }
    // what comes from the network may not name files, nor what a file names there
    const QByteArray part = QUrl::fromLocalFile(folder.filePath(QStringLiteral("part 0.ts")))
                                .toEncoded(QUrl::FullyEncoded);
    LoopbackServer server([&part](Connection& connection) {
        connection.send(answer("HTTP/1.0 200 OK") +
                        "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" + part +
                        "\n#EXT-X-ENDLIST\n");
    });
    EXPECT_EQ(listener.open(server.url(), &Library::HLS_StreamCreateURL), 0U);
    const QString master =
        write(QStringLiteral("master.m3u8"),
              "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\n" + QByteArray::fromStdString(server.url()));
    EXPECT_EQ(listener.openFile(master, &Library::HLS_StreamCreateFile), 0U);
    EXPECT_GE(server.requests().size(), 2U);
}

TEST(HlsStream, HostileStationsEndWithACode) {
    const auto noise = [](int size) {
        QByteArray bytes;
        quint32 state = 1;
        for (int n = 0; n < size; ++n) {
            state = state * 1664525U + 1013904223U;
            bytes += static_cast<char>(state >> 24);
        }
        return bytes;
    };
    QByteArray transport; // in step, but nothing else
    for (int n = 0; n < 200; ++n)
        transport += 'G' + noise(187);
    QByteArray manyLines = "#EXTM3U\n#EXT-X-TARGETDURATION:1\n";
    for (int n = 0; n < 50000; ++n)
        manyLines += "#EXTINF:1,\nnothing\n";
    const QByteArray shortList =
        "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\na\n#EXT-X-ENDLIST\n";
    const struct {
        const char* what;
        QByteArray list;
        QByteArray segment; ///< empty: there is none
        int error;
    } cases[] = {
        {"a hundred thousand lines to nowhere", manyLines, {}, BASS_ERROR_FILEOPEN},
        {"noise", shortList, noise(50000), BASS_ERROR_FILEFORM},
        {"one byte", shortList, "G", BASS_ERROR_FILEFORM},
        {"transport packets of noise", shortList, transport, BASS_ERROR_FILEFORM},
        {"a fragment of noise",
         shortList,
         "\x01\x01\x01\x01moof" + noise(5000),
         BASS_ERROR_FILEFORM},
        {"a tag without an end",
         shortList,
         "ID3\4\0\0\x7F\x7F\x7F\x7F" + noise(500),
         BASS_ERROR_FILEFORM},
        {"half a frame", shortList, tone(kAac, "adts").left(40), BASS_ERROR_FILEFORM},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        LoopbackServer server([&c](Connection& connection) {
            const bool isList = connection.request().startsWith("GET /stream");
            connection.send(answer(isList || !c.segment.isEmpty() ? "HTTP/1.0 200 OK"
                                                                  : "HTTP/1.0 404 Not Found") +
                            (isList ? c.list : c.segment));
        });
        Listener listener;
        EXPECT_EQ(listener.open(server.url(), &Library::HLS_StreamCreateURL), 0U);
        EXPECT_EQ(listener.library().ErrorGetCode(), c.error);
    }
    LoopbackServer endless([](Connection& connection) {
        connection.send(answer("HTTP/1.0 200 OK") + "#EXTM3U\n");
        while (connection.send(QByteArray(65536, '#')))
            ;
    });
    Listener listener;
    EXPECT_EQ(listener.open(endless.url(), &Library::HLS_StreamCreateURL), 0U);
    EXPECT_EQ(listener.library().ErrorGetCode(), BASS_ERROR_FILEFORM);
}

TEST(HlsStream, ManyStationsLeaveNothingBehind) {
    HlsScript script;
    script.pieces = aacPieces();
    script.isLive = true;
    const HlsStation station(script);
    Listener listener;
    const auto once = [&listener, &station] {
        const HSTREAM stream = open(listener, station.url());
        ASSERT_NE(stream, 0U);
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.library().StreamFree(stream));
    };
    for (int n = 0; n < 5; ++n)
        once(); // connections that stay open for the next request
    const int threads = test_system::threadCount();
    const int files = test_system::openFiles();
    for (int n = 0; n < 200; ++n)
        once();
    EXPECT_LE(settled(test_system::threadCount, threads + 2), threads + 2);
    EXPECT_LE(settled(test_system::openFiles, files + 10), files + 10);
}
