#include "audio/frame_header.h"
#include "recording/audio_tools.h"
#include "recording/stream_format.h"
#include "recording/stream_header_keeper.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using BASS::detectFormat;
using BASS::FrameList;
using BASS::StreamFormat;

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

QByteArray adts() {
    return encoded(words("-c:a aac -b:a 96k -f adts"));
}

/// The bytes and places of all frames, fed in pieces of `chunk` bytes.
struct Walk {
    QByteArray bytes;
    std::vector<qint64> positions;
    qint64 dropped = 0;
};

Walk walk(StreamFormat format, const QByteArray& stream, int chunk) {
    const auto parser = BASS::makeStreamParser(format, 1000);
    FrameList frames;
    for (int at = 0; at < stream.size(); at += chunk)
        parser->push(stream.constData() + at, std::min(chunk, stream.size() - at), frames);
    parser->finish(frames);
    Walk result;
    result.dropped = parser->droppedBytes();
    for (const BASS::AudioFrame& frame : frames) {
        result.bytes += frame.bytes;
        result.positions.push_back(frame.position);
    }
    return result;
}

} // namespace

TEST(FrameSplitter, ChunkingChangesNothing) {
    const QByteArray mp3 = lameEncoded(words("-b 128")).mid(1111, 40000);
    const QByteArray aac = adts().mid(1111, 40000);
    const QByteArray flac = encoded(words("-c:a flac -f flac")).left(60000);
    const std::vector<std::pair<StreamFormat, QByteArray>> streams{
        {StreamFormat::Mpeg, mp3}, {StreamFormat::Adts, aac}, {StreamFormat::Flac, flac}};
    for (const auto& [format, stream] : streams) {
        const Walk whole = walk(format, stream, stream.size());
        EXPECT_GT(whole.bytes.size(), stream.size() * 3 / 4);
        EXPECT_TRUE(stream.contains(whole.bytes));
        for (const int chunk : {1, 2, 3, 7, 417, 4096}) {
            const Walk pieces = walk(format, stream, chunk);
            EXPECT_TRUE(pieces.bytes == whole.bytes) << "chunk " << chunk;
            EXPECT_EQ(pieces.positions, whole.positions);
        }
        const int at = stream.indexOf(whole.bytes.left(300));
        EXPECT_EQ(whole.positions.front(), 1000 + at);
    }
}

TEST(FrameSplitter, NoiseOfAnyKindIsBoundedAndGivesNoFrames) {
    std::mt19937 random(7);
    QByteArray noise(300000, '\0');
    for (char& byte : noise)
        byte = static_cast<char>(random());
    for (const auto format : {StreamFormat::Mpeg, StreamFormat::Adts})
        EXPECT_EQ(walk(format, noise, 4096).positions.size(), 0U);
    EXPECT_EQ(detectFormat(noise, false), StreamFormat::Unknown);
    EXPECT_EQ(detectFormat(QByteArray(300000, '\xFF'), false), StreamFormat::Unknown);
}

TEST(StreamFormat, IsToldByTheBytes) {
    const QByteArray mp3 = lameEncoded(words("-b 128"));
    QByteArray tagged("ID3\x04\0\0\0\0\x10\0", 10);
    tagged += QByteArray(2048, '\0') + mp3;
    struct Case {
        const char* name;
        QByteArray bytes;
        std::optional<StreamFormat> format;
    };
    const std::vector<Case> cases{
        {"MP3", mp3.left(4096), StreamFormat::Mpeg},
        {"MP3 from the middle", mp3.mid(1234, 4096), StreamFormat::Mpeg},
        {"MP3 behind a tag", tagged.left(6000), StreamFormat::Mpeg},
        {"MP3 behind many tags",
         QByteArray("ID3\4\0\0\0\0\0\0", 10).repeated(200000) + mp3.left(4096),
         StreamFormat::Mpeg},
        {"a tag only", tagged.left(1000), std::nullopt},
        {"too few frames", mp3.left(800), std::nullopt},
        {"ADTS", adts().left(4096), StreamFormat::Adts},
        {"FLAC", encoded(words("-c:a flac -f flac")).left(4096), StreamFormat::Flac},
        {"Opus", encoded(words("-c:a libopus -f ogg")).left(4096), StreamFormat::Ogg},
        {"Speex", encoded(words("-c:a libspeex -ar 16000 -ac 1 -f ogg")), StreamFormat::OggOther},
        {"MP4",
         QByteArray("\0\0\0\x20"
                    "ftypisom\0\0\0\0",
                    16),
         StreamFormat::Mp4},
        {"text", QByteArray("<html>not found</html>").repeated(4000), StreamFormat::Unknown},
    };
    for (const Case& c : cases)
        EXPECT_EQ(detectFormat(c.bytes, false), c.format) << c.name;
    EXPECT_EQ(detectFormat("<html></html>", true), StreamFormat::Unknown);
}

TEST(StreamHeaderKeeper, KeepsWhatALaterStartNeeds) {
    const QByteArray opus = encoded(words("-c:a libopus -f ogg"));
    const QByteArray vorbis = encoded(words("-c:a libvorbis -f ogg"));
    const QByteArray flac = encoded(words("-c:a flac -f flac"));
    const QByteArray mp3 = lameEncoded(words("-b 128"));
    const auto kept = [](const QByteArray& stream, int chunk) {
        BASS::StreamHeaderKeeper keeper;
        for (int at = 0; at < stream.size(); at += chunk)
            keeper.push(stream.constData() + at, std::min(chunk, stream.size() - at));
        return keeper.header();
    };
    for (const int chunk : {1, 5, 1000, 1 << 20}) {
        EXPECT_TRUE(kept(mp3, chunk).isEmpty());
        for (const QByteArray& stream : {opus, vorbis, flac}) {
            const QByteArray header = kept(stream, chunk);
            EXPECT_GT(header.size(), 40);
            EXPECT_LT(header.size(), 20000);
            EXPECT_TRUE(stream.startsWith(header));
        }
        // a further link takes the place of the one before
        EXPECT_TRUE(kept(opus + vorbis, chunk) == kept(vorbis, chunk));
    }
}
