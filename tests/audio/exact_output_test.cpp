#include "audio/disk_output.h"
#include "audio/encoding.h"
#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace BASS;

namespace {

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
