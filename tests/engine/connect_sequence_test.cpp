#include "engine/connect_sequence.h"
#include "support/fake_library.h"
#include "support/test_station.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <thread>

using namespace BASS;
using namespace std::chrono_literals;

namespace {

/// Remembers what reached it as one text.
class TextSink final : public StreamSink {
  public:
    QByteArray seen;
    void connectionBegan(const char*) override { seen += '['; }
    void audioBytes(const char* data, qint64 bytes) override {
        seen.append(data, static_cast<int>(bytes));
    }
    void titleArrived(const StreamTitle& title) override {
        seen += '<' + QByteArray(title.data, static_cast<int>(title.length)) + '>';
    }
    void connectionEnded() override { seen += ']'; }
};

class ConnectSequenceTest : public ::testing::Test {
  protected:
    std::unique_ptr<ConnectSequence> sequence(const QString& address, int attempts = 2) {
        ConnectReport report;
        report.status = [this](const QString& text, bool) { status.append(text); };
        report.log = [](const QString&, bool) {};
        report.createBegins = [](StreamKind) {};
        ConnectRequest request;
        request.address = address;
        request.attempts = attempts;
        request.recordingDevice = recordingDevice;
        return std::make_unique<ConnectSequence>(library, request, report, sink);
    }

    static void deliver(const FakeLibrary::Create& call, const char* bytes) {
        call.proc("HTTP/1.0 200 OK\0", 0, call.user);
        call.proc(bytes, static_cast<DWORD>(std::strlen(bytes)), call.user);
    }

    [[nodiscard]] std::vector<std::string> functions() const {
        std::vector<std::string> names;
        for (const auto& call : library.creates)
            names.push_back(call.function);
        return names;
    }

    FakeLibrary library;
    TextSink sink;
    QStringList status;
    QString recordingDevice;
};

} // namespace

TEST_F(ConnectSequenceTest, TriesOnceOnlyAfterATimeOut) {
    library.error = BASS_ERROR_TIMEOUT;
    const auto connect = sequence(QStringLiteral("http://h/live"), 3);
    connect->run();
    EXPECT_EQ(functions(), std::vector<std::string>{"generic"});
    EXPECT_EQ(connect->errorCode(), BASS_ERROR_TIMEOUT);
}

TEST_F(ConnectSequenceTest, FallsBackByFormatAndRewritesTheAddress) {
    library.error = BASS_ERROR_FILEFORM;
    library.onCreate = [](const FakeLibrary::Create& call) -> HSTREAM {
        return call.function == "flac" ? 5 : 0;
    };
    const auto connect = sequence(QStringLiteral("icyx://h/live"), 3);
    connect->run();
    EXPECT_EQ(functions(), (std::vector<std::string>{"generic", "mp4", "flac"}));
    EXPECT_EQ(library.creates[0].url, QStringLiteral("http://h/live"));
    EXPECT_EQ(connect->kind(), StreamKind::Flac);
    EXPECT_EQ(status.first(), QStringLiteral("Connecting first try..."));
    EXPECT_EQ(status.last(), QStringLiteral("Connection succeeded"));
}

TEST_F(ConnectSequenceTest, LocalFilesGoThroughTheFileChain) {
    library.onCreate = [](const FakeLibrary::Create& call) -> HSTREAM {
        return call.function == "opus file" ? 5 : 0;
    };
    const auto connect = sequence(QStringLiteral("file:///a/b.opus"));
    connect->run();
    EXPECT_EQ(functions(), (std::vector<std::string>{"file", "aac file", "wma file", "opus file"}));
    EXPECT_EQ(library.creates[0].url, QStringLiteral("/a/b.opus"));
}

TEST_F(ConnectSequenceTest, OpensTheChosenRecordingDeviceAndNoOther) {
    library.devices = {{"Default", "", 0}, {"Line in", "", 0}, {"Microphone", "", 0}};
    library.onCreate = [](const FakeLibrary::Create&) -> HSTREAM { return 5; };
    const struct {
        const char* chosen;
        const char* opened;
    } rows[] = {{"", "-1"}, {"Microphone", "2"}, {"Unplugged", nullptr}};
    for (const auto& row : rows) {
        library.creates.clear();
        recordingDevice = QString::fromLatin1(row.chosen);
        const auto connect = sequence(QStringLiteral("RecordingDevice"));
        connect->run();
        ASSERT_EQ(library.creates.size(), row.opened != nullptr ? 1U : 0U) << row.chosen;
        if (row.opened != nullptr) {
            EXPECT_EQ(library.creates[0].url, QString::fromLatin1(row.opened));
        } else {
            EXPECT_EQ(connect->errorCode(), BASS_ERROR_DEVICE);
        }
    }
}

TEST_F(ConnectSequenceTest, FailedTriesReachNobodyAndGoodOnesLoseNothing) {
    library.error = BASS_ERROR_FILEFORM;
    library.onCreate = [](const FakeLibrary::Create& call) -> HSTREAM {
        deliver(call, call.function == "generic" ? "html" : "audio");
        if (call.function == "generic")
            return 0;
        ConnectSequence::titleProc({5, BASS_TAG_META, "t", 1}, call.user);
        call.proc("more", 4, call.user);
        return 9;
    };
    const auto connect = sequence(QStringLiteral("http://h/live"));
    connect->run();
    EXPECT_EQ(sink.seen, "[audio<t>more");
    library.creates.back().proc("rest", 4, library.creates.back().user);
    library.creates.back().proc(nullptr, 0, library.creates.back().user);
    EXPECT_EQ(sink.seen, "[audio<t>morerest]");
    connect->detachSink();
    library.creates.back().proc("late", 4, library.creates.back().user);
    EXPECT_EQ(sink.seen, "[audio<t>morerest]");
}

TEST_F(ConnectSequenceTest, CancelEndsThePauseAndFreesTheChannel) {
    library.error = BASS_ERROR_FILEOPEN;
    const auto failing = sequence(QStringLiteral("http://h/live"), 1000);
    std::thread worker([&] { failing->run(); });
    failing->cancel();
    worker.join();
    EXPECT_TRUE(library.isCanceled);
    EXPECT_EQ(status.last(), QStringLiteral("Connection canceled"));

    ConnectSequence* running = nullptr;
    library.onCreate = [&running](const FakeLibrary::Create&) -> HSTREAM {
        running->cancel();
        return 11;
    };
    const auto late = sequence(QStringLiteral("http://h/live"));
    running = late.get();
    late->run();
    EXPECT_EQ(late->handle(), 0U);
    EXPECT_EQ(library.freed, std::vector<DWORD>{11});
}

TEST_F(ConnectSequenceTest, FollowsPlaylistsWithoutUsingUpAttempts) {
    TestStation server;
    ASSERT_TRUE(server.listen());
    const auto answerWith = [&server](const QByteArray& body) {
        StationScript script;
        script.rawAnswer = "HTTP/1.0 200 OK\r\n\r\n" + body;
        server.setScript(script);
    };
    library.error = BASS_ERROR_FILEFORM;
    library.onCreate = [](const FakeLibrary::Create& call) -> HSTREAM {
        return call.url == QStringLiteral("http://h/live") ? 3 : 0;
    };
    answerWith("[playlist]\r\nFile1=icy://h/live\r\n");
    const auto connect = sequence(server.url(QStringLiteral("/a.pls")), 1);
    connect->run();
    EXPECT_EQ(connect->handle(), 3U);
    EXPECT_EQ(connect->address(), QStringLiteral("http://h/live"));

    // one that points at itself ends
    library.creates.clear();
    answerWith(server.url(QStringLiteral("/b.m3u")).toLatin1() + "\n");
    const auto circle = sequence(server.url(QStringLiteral("/b.m3u")), 1);
    circle->run();
    EXPECT_EQ(circle->handle(), 0U);
    EXPECT_LT(library.creates.size(), 100U);

    // a live playlist of segments is played itself
    library.creates.clear();
    library.onCreate = [](const FakeLibrary::Create& call) -> HSTREAM {
        return call.function == "hls" ? 4 : 0;
    };
    answerWith("#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\na.ts\n");
    const auto hls = sequence(server.url(QStringLiteral("/live")), 1);
    hls->run();
    EXPECT_EQ(hls->kind(), StreamKind::Hls);
}

TEST_F(ConnectSequenceTest, AsksTheDirectoryAndHonoursAddressOptions) {
    TestStation server;
    ASSERT_TRUE(server.listen());
    StationScript script;
    script.rawAnswer = "HTTP/1.0 200 OK\r\n\r\nhttp://h/found\r\n";
    server.setScript(script);
    library.onCreate = [](const FakeLibrary::Create&) -> HSTREAM { return 3; };
    const auto found = sequence(server.url(QStringLiteral("/station_rr.php?station_id=7")));
    found->run();
    ASSERT_EQ(library.creates.size(), 1U);
    EXPECT_EQ(library.creates[0].url, QStringLiteral("http://h/found"));

    const auto options =
        sequence(QStringLiteral("http://h/x#user_agent=Name%2F1&parse_playlist=true"));
    options->run();
    EXPECT_EQ(library.creates[1].url, QStringLiteral("http://h/x"));
    EXPECT_EQ(library.texts[BASS_CONFIG_NET_AGENT], QString()); // put back

    script.rawAnswer = "HTTP/1.0 200 OK\r\n\r\nno such station";
    server.setScript(script);
    const auto lost = sequence(server.url(QStringLiteral("/station_rr.php?station_id=8")), 1);
    lost->run();
    EXPECT_EQ(lost->handle(), 0U);
    EXPECT_EQ(library.creates.size(), 2U);
}
