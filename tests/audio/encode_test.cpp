#include "audio/encoding.h"
#include "audio/listener.h"
#include "audio/tracks.h"
#include "support/media_tools.h"

#include <QFile>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <functional>
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
    // that block has been read; nothing tells from outside when it has been decoded as well
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
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

namespace {

/// The whole track through the encoders that `begin` starts, then StopEx of the one it returns.
HENCODE playWhole(Listener& listener,
                  const QString& path,
                  const std::function<HENCODE(AudioLibrary&, HSTREAM)>& begin) {
    AudioLibrary& library = listener.library();
    const HSTREAM stream = openWaiting(listener, listener.openFile(path));
    const HENCODE last = begin(library, stream);
    EXPECT_NE(last, 0U) << library.ErrorGetCode();
    library.ChannelSetPosition(stream, 0, BASS_POS_BYTE);
    library.ChannelPlay(stream, false);
    EXPECT_TRUE(listener.waitFor(BASS_SYNC_END));
    library.Encode_StopEx(last, true);
    return last;
}

} // namespace

TEST(Encode, ACutChangesFilesAtOneSample) {
    Encoding encoding;
    Listener listener;
    std::vector<HENCODE> files;
    const QString wav = trackPath(Track::Wav);
    playWhole(listener, wav, [&](AudioLibrary& library, HSTREAM stream) {
        const auto cut = [&](QWORD position, DWORD delayMs) {
            files.push_back(library.Encode_CutAt(
                files.back(), position, delayMs, &Encoding::onBytes, &encoding));
        };
        files = {start(library, &AudioEncoding::Encode_FLAC_Start, stream, "", encoding)};
        cut(200000, 0); // one after the other before the first is reached
        cut(200000, 100);
        cut(300000, 0);
        EXPECT_EQ(library.Encode_CutAt(files[0], 5, 0, &Encoding::onBytes, &encoding), 0U);
        EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_ALREADY);
        return files.back();
    });
    QByteArray joined;
    std::vector<int> frames;
    for (const HENCODE file : files) {
        ASSERT_TRUE(encoding.waitForEnd(file));
        EXPECT_EQ(encoding.ends(file), 1);
        const QByteArray decoded = decodedByFfmpeg(encoding.file(file, "flac"));
        frames.push_back(decoded.size() / kFrameBytes);
        joined += decoded;
    }
    EXPECT_TRUE(joined == decodedByFfmpeg(wav));
    EXPECT_NEAR(frames[0], 200000 / 4, 1024);
    EXPECT_EQ(frames[1], 4410);
    EXPECT_NEAR(frames[0] + frames[1] + frames[2], 300000 / 4, 1024);
}

TEST(Encode, ALateCutLosesNothing) {
    Encoding encoding;
    Listener listener;
    const QString wav = trackPath(Track::Wav);
    AudioLibrary& library = listener.library();
    const HSTREAM stream = openWaiting(listener, listener.openFile(wav));
    const HENCODE first = start(library, &AudioEncoding::Encode_FLAC_Start, stream, "", encoding);
    library.ChannelSetPosition(stream, 0, BASS_POS_BYTE);
    library.ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    constexpr int kLatePlace = 450000; // bytes; 0.45 s before the end
    const HENCODE second =
        library.Encode_CutAt(first, kLatePlace, 0, &Encoding::onBytes, &encoding);
    ASSERT_NE(second, 0U);
    ASSERT_TRUE(encoding.waitForEnd(first)); // by itself
    library.Encode_StopEx(second, true);
    ASSERT_TRUE(encoding.waitForEnd(second));
    EXPECT_EQ(library.Encode_CutAt(first, 0, 0, &Encoding::onBytes, &encoding), 0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_HANDLE);
    const QByteArray head = decodedByFfmpeg(encoding.file(first, "flac"));
    EXPECT_NEAR(head.size() / kFrameBytes, kLatePlace / 4, 1024);
    EXPECT_TRUE(head + decodedByFfmpeg(encoding.file(second, "flac")) == decodedByFfmpeg(wav));
}

TEST(Encode, GoesOnWithAnotherChannelAndEndsWithIt) {
    Encoding encoding;
    Listener listener;
    AudioLibrary& library = listener.library();
    const QString wav = trackPath(Track::Wav);
    const auto play = [&](HSTREAM stream) {
        library.ChannelSetPosition(stream, 0, BASS_POS_BYTE);
        library.ChannelPlay(stream, false);
        EXPECT_TRUE(listener.waitFor(BASS_SYNC_END));
        listener.syncs.clear();
    };
    const HSTREAM before = openWaiting(listener, listener.openFile(wav));
    const HENCODE file = start(library, &AudioEncoding::Encode_FLAC_Start, before, "", encoding);
    play(before);
    const HSTREAM after = openWaiting(listener, listener.openFile(wav));
    ASSERT_TRUE(library.Encode_SetChannel(file, after));
    library.StreamFree(before);
    EXPECT_EQ(encoding.ends(file), 0);
    play(after);
    EXPECT_EQ(library.Encode_IsActive(after), BASS_ACTIVE_PLAYING);
    library.StreamFree(after);
    EXPECT_EQ(encoding.ends(file), 1); // before it returned
    EXPECT_EQ(library.Encode_IsActive(file), BASS_ACTIVE_STOPPED);
    const QByteArray once = decodedByFfmpeg(wav);
    EXPECT_TRUE(decodedByFfmpeg(encoding.file(file, "flac")) == once + once);
}

TEST(Encode, ExternalProgramsMakeTheSameFiles) {
    struct Case {
        const char* program;
        const char* arguments;
        DWORD flags;
        const char* extension;
        int most;
    };
    const Case cases[] = {
        {"lame", "--quiet --cbr -b 128 - -", 0, "mp3", 4 * 1152},
        {"lame", "--quiet -V 4 -r -s 44.1 - -", BASS_ENCODE_NOHEAD, "mp3", 4 * 1152},
        {"oggenc", "-Q -r -B 16 -C 2 -R 44100 -q 4 -o - -", BASS_ENCODE_NOHEAD, "ogg", 0},
        {"flac",
         "-s --force-raw-format --endian=little --sign=signed --channels=2 --bps=16 "
         "--sample-rate=44100 -c -",
         BASS_ENCODE_NOHEAD | BASS_ENCODE_FP_16BIT,
         "flac",
         0},
    };
    for (const Case& c : cases) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(c.program)).isEmpty())
            continue;
        SCOPED_TRACE(c.arguments);
        Encoding encoding;
        Listener listener;
        const std::string line = std::string(c.program) + ' ' + c.arguments;
        const HENCODE file =
            playWhole(listener, trackPath(Track::Wav), [&](AudioLibrary& library, HSTREAM stream) {
                return library.Encode_Start(
                    stream, line.c_str(), c.flags, &Encoding::onBytes, &encoding);
            });
        ASSERT_TRUE(encoding.waitForEnd(file));
        const QString path = encoding.file(file, c.extension);
        EXPECT_EQ(media::decodeErrors(path), QString());
        EXPECT_GE(framesOf(path), kTrackFrames);
        EXPECT_LE(framesOf(path), kTrackFrames + c.most);
    }
}

/// As where a recording is stopped right at a cut: the head alone would be a broken file.
TEST(Encode, AnEncoderWithoutAudioGivesOutNothing) {
    const QByteArray program = encoderStandIn("copy");
    const std::pair<Start, const char*> cases[] = {
        {&AudioEncoding::Encode_MP3_Start, "--cbr -b128"},
        {&AudioEncoding::Encode_OGG_Start, "-q5"},
        {&AudioEncoding::Encode_FLAC_Start, ""},
        {&AudioEncoding::Encode_FLAC_Start, "--ogg"},
        {&AudioEncoding::Encode_AAC_Start, "-b128 --m4a"},
        {&AudioEncoding::Encode_WMA_Start, "--cbr -b128 -s44100 -c2"},
        {&AudioEncoding::Encode_Start, program.constData()},
    };
    for (const auto& [how, options] : cases) {
        SCOPED_TRACE(options);
        Encoding encoding;
        Listener listener;
        AudioLibrary& library = listener.library();
        library.SetEncodeRewriteProc(&Encoding::onRewrite);
        const HSTREAM stream = openWaiting(listener, listener.openFile(trackPath(Track::Wav)));
        const HENCODE encoder = start(library, how, stream, options, encoding);
        ASSERT_NE(encoder, 0U) << library.ErrorGetCode();
        library.Encode_StopEx(encoder, true);
        ASSERT_TRUE(encoding.waitForEnd(encoder));
        EXPECT_EQ(encoding.bytes(encoder), QByteArray());
    }
}

TEST(Encode, AProgramThatDiesIsNoticedWhileTheMusicGoesOn) {
    Encoding encoding;
    Listener listener;
    AudioLibrary& library = listener.library();
    const HSTREAM stream = openWaiting(listener, listener.openFile(trackPath(Track::Wav)));
    EXPECT_EQ(library.Encode_Start(stream, "/no/such program -", 0, &Encoding::onBytes, &encoding),
              0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_FILEOPEN);
    const QByteArray program = encoderStandIn("take 1000; exit 3");
    const HENCODE file =
        library.Encode_Start(stream, program.constData(), 0, &Encoding::onBytes, &encoding);
    ASSERT_NE(file, 0U);
    library.ChannelPlay(stream, false);
    ASSERT_TRUE(encoding.waitForEnd(file));
    EXPECT_EQ(library.Encode_IsActive(file), BASS_ACTIVE_STOPPED);
    EXPECT_TRUE(listener.waitFor(BASS_SYNC_END));
}

TEST(Encode, WritesWmaFromPcmThatIsBrought) {
    FfmpegLibrary library;
    const DWORD* rates = library.WMA_EncodeGetRates(44100, 2, BASS_WMA_ENCODE_STANDARD);
    ASSERT_NE(rates, nullptr);
    EXPECT_EQ(library.WMA_EncodeGetRates(96000, 2, 0), nullptr);
    for (; *rates != 0; ++rates) {
        SCOPED_TRACE(*rates);
        const QString path = Encoding().file(0, "wma");
        const HWMENCODE file =
            library.WMA_EncodeOpenFile(44100, 2, BASS_UNICODE, *rates, path.utf16());
        ASSERT_NE(file, 0U) << library.ErrorGetCode();
        QFile wav(trackPath(Track::Wav));
        ASSERT_TRUE(wav.open(QIODevice::ReadOnly) && wav.seek(44));
        const QByteArray pcm = wav.readAll();
        EXPECT_TRUE(library.WMA_EncodeWrite(file, pcm.constData(), static_cast<DWORD>(pcm.size())));
        EXPECT_TRUE(library.WMA_EncodeClose(file));
        EXPECT_FALSE(library.WMA_EncodeClose(file));
        EXPECT_EQ(media::decodeErrors(path), QString());
        EXPECT_GE(framesOf(path), kTrackFrames);
        EXPECT_NEAR(
            media::probe(path, QStringLiteral("format=duration")).toDouble(), kTrackSeconds, 0.2);
    }
}
