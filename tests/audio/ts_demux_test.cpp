#include "audio/hls/ts_demux.h"
#include "audio/tracks.h"
#include "support/hls_station.h"

#include <gtest/gtest.h>

#include <vector>

using namespace BASS;

namespace {

struct Collected final : TsDemux::Sink {
    void audio(const std::uint8_t* data, std::size_t size) override {
        bytes.append(reinterpret_cast<const char*>(data), static_cast<int>(size));
    }
    void id3(const std::uint8_t* data, std::size_t size) override {
        tags.push_back({bytes.size(),
                        QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size))});
    }
    struct Tag {
        int at;
        QByteArray bytes;
    };
    QByteArray bytes;
    std::vector<Tag> tags;
};

void feed(TsDemux& demux, const QByteArray& bytes) {
    demux.feed(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
               static_cast<std::size_t>(bytes.size()));
}

/// Transport packets of one payload; short ones are filled up in the adaptation field.
QByteArray packets(int pid, const QByteArray& payload) {
    constexpr int kRoom = 184;
    QByteArray out;
    for (int at = 0; at < payload.size(); at += kRoom) {
        const QByteArray part = payload.mid(at, kRoom);
        const int fill = kRoom - part.size();
        out += 'G';
        out += static_cast<char>((at == 0 ? 0x40 : 0) | pid >> 8);
        out += static_cast<char>(pid & 0xFF);
        out += static_cast<char>(fill > 0 ? 0x30 : 0x10);
        if (fill > 0)
            out += static_cast<char>(fill - 1);
        if (fill > 1)
            out += QByteArray(1, '\0') + QByteArray(fill - 2, '\xFF');
        out += part;
    }
    return out;
}

QByteArray hex(const char* text) {
    return QByteArray::fromHex(text);
}

/// Programme 1 with its map on PID 0x100; ADTS on 0x101, timed tags on 0x102.
QByteArray tables(const char* audioType = "0F") {
    const QByteArray streams = hex(audioType) + hex("E101F000") + hex("15E102F000");
    QByteArray map = hex("0001C10000E101F000") + streams + hex("00000000");
    map = hex("02B0") + static_cast<char>(map.size()) + map;
    return packets(0, QByteArray(1, '\0') + hex("00B00D0001C100000001E10000000000")) +
           packets(0x100, QByteArray(1, '\0') + map);
}

QByteArray pes(int pid, qint64 time, const QByteArray& body) {
    QByteArray head = hex("000001C0");
    const int length = body.size() + 8;
    head += static_cast<char>(length >> 8);
    head += static_cast<char>(length & 0xFF);
    head += hex("808005");
    head += static_cast<char>(0x21 | (time >> 30 & 7) << 1);
    head += static_cast<char>(time >> 22 & 0xFF);
    head += static_cast<char>(1 | (time >> 15 & 0x7F) << 1);
    head += static_cast<char>(time >> 7 & 0xFF);
    head += static_cast<char>(1 | (time & 0x7F) << 1);
    return packets(pid, head + body);
}

} // namespace

TEST(TsDemux, GivesTheElementaryStreamToTheByteInAnyChunking) {
    // what ffmpeg's own demultiplexer takes out of the same segments
    const QVector<HlsPiece> pieces =
        hlsPieces({QStringLiteral("-c:a"), QStringLiteral("aac")}, QStringLiteral("mpegts"), 3);
    ASSERT_EQ(pieces.size(), 2);
    QByteArray expected;
    for (const int chunk : {188 * 7, 1, 187, 4096}) {
        Collected out;
        TsDemux demux(out);
        for (const HlsPiece& piece : pieces) {
            for (int at = 0; at < piece.bytes.size(); at += chunk)
                feed(demux, piece.bytes.mid(at, chunk));
            demux.segmentEnds();
        }
        EXPECT_EQ(demux.codec(), TsDemux::Codec::Adts);
        if (expected.isEmpty())
            expected = out.bytes;
        EXPECT_TRUE(out.bytes == expected) << chunk;
    }
    EXPECT_EQ(expected.size(),
              packedPieces(expected, {"", ""})[0].bytes.size() +
                  packedPieces(expected, {"", ""})[1].bytes.size() -
                  2 * id3Tag("Artist", "").size()); // frames from end to end
}

TEST(TsDemux, PutsTimedTagsBeforeTheAudioOfTheirTime) {
    Collected out;
    TsDemux demux(out);
    const QByteArray tag = id3Tag("Artist", QByteArray(300, 'x'));
    constexpr qint64 kWrap = qint64{1} << 33;
    feed(demux,
         tables() + pes(0x102, kWrap - 90, tag) + pes(0x101, kWrap - 1000, QByteArray(500, 'a')) +
             pes(0x101, 10, QByteArray(400, 'b')));
    ASSERT_EQ(out.tags.size(), 1U);
    EXPECT_EQ(out.tags[0].at, 500); // its time lies between the two, and wraps
    EXPECT_TRUE(out.tags[0].bytes == tag);
    EXPECT_EQ(out.bytes.size(), 900);
    feed(demux, pes(0x102, 1000000, tag));
    demux.reset(); // what still waits is told at the latest now
    EXPECT_EQ(out.tags.size(), 2U);
}

TEST(TsDemux, SaysWhenItCannotPlayWhatIsThere) {
    for (const auto& [type, codec] : {std::pair{"0F", TsDemux::Codec::Adts},
                                      {"03", TsDemux::Codec::Mpeg},
                                      {"04", TsDemux::Codec::Mpeg},
                                      {"81", TsDemux::Codec::Unsupported},
                                      {"1B", TsDemux::Codec::None}}) {
        Collected out;
        TsDemux demux(out);
        feed(demux, tables(type));
        EXPECT_EQ(demux.codec(), codec) << type;
    }
}

TEST(TsDemux, FindsItsStepAgain) {
    Collected out;
    TsDemux demux(out);
    feed(demux,
         "rubbish" + tables() + "no sync here" + pes(0x101, 0, QByteArray(170, 'a')) +
             QByteArray(50, 'x') + pes(0x101, 0, QByteArray(170, 'b')));
    EXPECT_TRUE(out.bytes == QByteArray(170, 'a') + QByteArray(170, 'b'));
}
