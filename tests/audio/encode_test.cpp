#include "audio/encoding.h"
#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"
#include "support/media_tools.h"

#include <gtest/gtest.h>

#include <thread>

using namespace BASS;

namespace {

using Start = HENCODE (AudioEncoding::*)(DWORD, const void*, DWORD, ENCODEPROC*, void*);

constexpr int kFrameBytes = 8; // of what decodedByFfmpeg() gives
constexpr int kTrackFrames = static_cast<int>(kTrackSeconds * 44100);

HENCODE
start(AudioLibrary& library, Start how, DWORD channel, const char* options, Encoding& encoding) {
    return (library.*how)(channel, options, 0, &Encoding::onBytes, &encoding);
}

/// A file whose decoder waits, so that an encoder started now gets the whole of it.
HSTREAM openWaiting(Listener& listener, HSTREAM stream) {
    constexpr QWORD kFullBuffer = 33 * 4096; // one block of WAV more than fits
    for (int n = 0; n < 10000; ++n) {
        if (listener.library().StreamGetFilePosition(stream, BASS_FILEPOS_CURRENT) >= kFullBuffer)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return stream;
}

int framesOf(const QString& path) {
    return decodedByFfmpeg(path).size() / kFrameBytes;
}

} // namespace

TEST(Encode, EachEncoderMakesACompleteFile) {
    struct Case {
        const char* name;
        Start start;
        const char* options;
        const char* extension;
        int most; ///< frames more than the track has; the codec's padding where none can be told
    };
    const Case cases[] = {
        {"mp3", &AudioEncoding::Encode_MP3_Start, "--cbr -b128", "mp3", 0},
        {"mp3 vbr", &AudioEncoding::Encode_MP3_Start, "--vbr-new -V4 -b96 -B192", "mp3", 0},
        {"mp3 abr", &AudioEncoding::Encode_MP3_Start, "--abr 160", "mp3", 0},
        {"vorbis", &AudioEncoding::Encode_OGG_Start, "-q5", "ogg", 0},
        {"vorbis managed", &AudioEncoding::Encode_OGG_Start, "-b128 -m96 -M192", "ogg", 0},
        {"flac", &AudioEncoding::Encode_FLAC_Start, "--compression-level-5", "flac", 0},
        {"flac ogg", &AudioEncoding::Encode_FLAC_Start, "--compression-level-0 --ogg", "oga", 0},
        {"adts", &AudioEncoding::Encode_AAC_Start, "--br 96", "aac", 3 * 1024},
        {"m4a", &AudioEncoding::Encode_AAC_Start, "-b128 --m4a", "m4a", 2 * 1024},
        {"wma", &AudioEncoding::Encode_WMA_Start, "--cbr -b128 -s44100 -c2", "wma", 3 * 2048},
    };
    for (const bool canRewrite : {true, false}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.name) + (canRewrite ? " rewritten" : " forward only"));
            Encoding encoding;
            Listener listener;
            AudioLibrary& library = listener.library();
            library.SetEncodeRewriteProc(canRewrite ? &Encoding::onRewrite : nullptr);
            const HSTREAM stream = openWaiting(listener, listener.openFile(trackPath(Track::Wav)));
            ASSERT_NE(stream, 0U);
            const HENCODE encoder = start(library, c.start, stream, c.options, encoding);
            ASSERT_NE(encoder, 0U) << library.ErrorGetCode();
            library.ChannelSetPosition(stream, 0, BASS_POS_BYTE);
            library.ChannelPlay(stream, false);
            ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
            EXPECT_EQ(library.Encode_IsActive(encoder), BASS_ACTIVE_PLAYING);
            EXPECT_TRUE(library.Encode_StopEx(encoder, true));
            ASSERT_TRUE(encoding.waitForEnd(encoder));
            const QString path = encoding.file(encoder, c.extension);
            EXPECT_EQ(media::decodeErrors(path), QString());
            const bool hasExactLength = canRewrite || c.extension != std::string("mp3");
            const int tolerance = hasExactLength ? c.most : 3 * 1152;
            EXPECT_GE(framesOf(path), kTrackFrames);
            EXPECT_LE(framesOf(path), kTrackFrames + tolerance);
        }
    }
}
