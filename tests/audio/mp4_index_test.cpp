#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/mp4_index.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

using namespace BASS;

namespace {

std::vector<std::uint8_t> bytes(const QByteArray& from) {
    return {from.begin(), from.end()};
}

QByteArray box(const char* name, const QByteArray& body) {
    QByteArray size(4, '\0');
    size[2] = static_cast<char>((body.size() + 8) >> 8);
    size[3] = static_cast<char>((body.size() + 8) & 0xFF);
    return size + name + body;
}

const QByteArray kHead = QByteArray::fromHex("0000000000000001"); // one offset

QByteArray index(const char* table, const QByteArray& body) {
    return box("moov", box("trak", box("mdia", box("minf", box("stbl", box(table, body))))));
}

/// A server of files that knows ranges.
LoopbackServer::Script serves(const QByteArray& file, bool knowsRanges = true) {
    return [file, knowsRanges](Connection& connection) {
        const QByteArray& request = connection.request();
        const int at = request.indexOf("Range: bytes=");
        const int from = at < 0 || !knowsRanges ? 0 : request.mid(at + 13).split('-')[0].toInt();
        const QByteArray part = file.mid(from);
        connection.send(
            answer(from > 0 ? "HTTP/1.1 206 Partial Content" : "HTTP/1.1 200 OK",
                   {"Content-Length: " + QByteArray::number(part.size()),
                    "Content-Range: bytes " + QByteArray::number(from) + "-" +
                        QByteArray::number(file.size() - 1) + "/" + QByteArray::number(file.size()),
                    "Connection: close"}) +
            part);
    };
}

} // namespace

TEST(Mp4Index, MovesOffsets) {
    auto moov = bytes(index("stco", kHead + QByteArray::fromHex("00000100")));
    ASSERT_TRUE(shiftMp4Offsets(moov, 0x20));
    EXPECT_EQ(moov.back(), 0x20);
    moov = bytes(index("co64", kHead + QByteArray::fromHex("00000000FFFFFFFF")));
    ASSERT_TRUE(shiftMp4Offsets(moov, 1));
    EXPECT_EQ(moov[moov.size() - 5], 1);
    const std::pair<const char*, QByteArray> damaged[] = {
        {"would not fit", index("stco", kHead + QByteArray::fromHex("FFFFFFF0"))},
        {"lies of its count", index("stco", QByteArray::fromHex("0000000000000002") + "abcd")},
        {"cut off", index("stco", kHead + QByteArray::fromHex("00000100")).chopped(3)},
        {"packed", box("moov", box("cmov", "x"))},
        {"no boxes", box("moov", "0000000000000000")},
    };
    for (const auto& [what, text] : damaged) {
        auto broken = bytes(text);
        EXPECT_FALSE(shiftMp4Offsets(broken, 0x20)) << what;
    }
}

TEST(Mp4Index, IsFetchedWhereItStandsBehindTheAudio) {
    for (const bool knowsRanges : {true, false}) {
        SCOPED_TRACE(knowsRanges);
        const QByteArray& file = track(Track::M4aIndexLast);
        LoopbackServer server(serves(file, knowsRanges));
        Listener listener;
        const HSTREAM stream = listener.open(server.url(), &AudioLibrary::MP4_StreamCreateURL);
        if (!knowsRanges) { // there is no way, and it is said
            EXPECT_EQ(stream, 0U);
            EXPECT_EQ(listener.library().ErrorGetCode(), BASS_ERROR_FILEFORM);
            continue;
        }
        ASSERT_NE(stream, 0U) << listener.library().ErrorGetCode();
        EXPECT_STREQ(listener.library().ChannelGetTags(stream, BASS_TAG_MP4), "title=First");
        listener.library().ChannelPlay(stream, false);
        ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
        EXPECT_NEAR(listener.syncs.back().seconds, kTrackSeconds, 0.1);
        EXPECT_TRUE(listener.bytes == file); // what is recorded is the file as it is
    }
}
