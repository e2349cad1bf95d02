#include "audio/encoding.h"
#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using namespace BASS;

namespace {

/// What reached the device, written by SDL's "disk" driver in real time.
class DiskOutput {
  public:
    DiskOutput() : m_driver(qgetenv("SDL_AUDIODRIVER")) {
        qputenv("SDL_AUDIODRIVER", "disk");
        qputenv("SDL_DISKAUDIOFILE", path().toLocal8Bit());
    }
    ~DiskOutput() {
        qunsetenv("SDL_DISKAUDIOFILE");
        qputenv("SDL_AUDIODRIVER", m_driver);
    }
    Q_DISABLE_COPY_MOVE(DiskOutput)

    [[nodiscard]] QByteArray bytes() const {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

  private:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("out.f32")); }

    QByteArray m_driver;
    QTemporaryDir m_folder;
};

QByteArray withoutLeadingSilence(const QByteArray& bytes) {
    constexpr int kFrame = 8;
    int at = 0;
    while (
        at + kFrame <= bytes.size() &&
        std::all_of(bytes.begin() + at, bytes.begin() + at + kFrame, [](char c) { return c == 0; }))
        at += kFrame;
    return bytes.mid(at);
}

} // namespace

TEST(ExactOutput, EverySampleIsTheDecodersOwn) {
    const QByteArray expected = withoutLeadingSilence(decodedByFfmpeg(trackPath(Track::Mp3)));
    ASSERT_GT(expected.size(), 1000000);
    LoopbackServer server([](Connection& connection) {
        const QByteArray audio = track(Track::Mp3);
        connection.send(answer("ICY 200 OK", {"icy-metaint: 1000"}) +
                        withTitles(audio, 1000, {{0, "A"}, {20000, "B"}}));
    });
    for (const bool isFile : {true, false}) {
        SCOPED_TRACE(isFile ? "file" : "stream");
        const DiskOutput output;
        {
            Listener listener;
            const HSTREAM stream =
                isFile ? listener.openFile(trackPath(Track::Mp3)) : listener.open(server.url());
            ASSERT_NE(stream, 0U);
            listener.library().ChannelPlay(stream, false);
            ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        }
        const QByteArray heard = withoutLeadingSilence(output.bytes()).left(expected.size());
        ASSERT_EQ(heard.size(), expected.size());
        EXPECT_LE(greatestDifference(heard, expected), DECODER_ROUNDING);
    }
}
