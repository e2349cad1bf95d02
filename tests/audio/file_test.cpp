#include "audio/listener.h"
#include "audio/tracks.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace BASS;

TEST(LocalFile, PlaysJumpsAndPlaysAgain) {
    Listener listener;
    AudioLibrary& library = listener.library();
    const HSTREAM stream = listener.openFile(trackPath(Track::Mp3));
    ASSERT_NE(stream, 0U) << library.ErrorGetCode();
    const auto seconds = [&] {
        return library.ChannelBytes2Seconds(stream, library.ChannelGetPosition(stream, 0));
    };
    EXPECT_NEAR(library.ChannelBytes2Seconds(stream, library.ChannelGetLength(stream, 0)),
                kTrackSeconds,
                0.1);
    ASSERT_TRUE(library.ChannelSetPosition(stream, library.ChannelSeconds2Bytes(stream, 2.5), 0));
    library.ChannelPlay(stream, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_NEAR(seconds(), kTrackSeconds, 0.1);
    EXPECT_EQ(library.ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
    listener.syncs.clear();
    ASSERT_TRUE(library.ChannelPlay(stream, false)); // once more, from the start
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    EXPECT_NEAR(seconds(), kTrackSeconds, 0.1);
    EXPECT_FALSE(library.ChannelSetPosition(stream, library.ChannelSeconds2Bytes(stream, 99), 0));
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_POSITION);
}

TEST(LocalFile, EveryFormatHasALengthAndJumps) {
    using Create = HSTREAM (AudioLibrary::*)(const void*, DWORD);
    const std::pair<Track, Create> cases[] = {
        {Track::Mp3, &AudioLibrary::StreamCreateFile},
        {Track::Adts, &AudioLibrary::AAC_StreamCreateFile},
        {Track::Vorbis, &AudioLibrary::StreamCreateFile},
        {Track::Opus, &AudioLibrary::OPUS_StreamCreateFile},
        {Track::OggFlac, &AudioLibrary::FLAC_StreamCreateFile},
        {Track::Flac, &AudioLibrary::FLAC_StreamCreateFile},
        {Track::M4a, &AudioLibrary::MP4_StreamCreateFile},
        {Track::M4aIndexLast, &AudioLibrary::MP4_StreamCreateFile},
        {Track::Wma, &AudioLibrary::WMA_StreamCreateFile},
        {Track::Wav, &AudioLibrary::StreamCreateFile},
        {Track::Aiff, &AudioLibrary::StreamCreateFile},
    };
    Listener listener;
    AudioLibrary& library = listener.library();
    for (const auto& [which, create] : cases) {
        SCOPED_TRACE(static_cast<int>(which));
        const QString path = trackPath(which);
        const HSTREAM stream = (library.*create)(path.utf16(), BASS_UNICODE);
        ASSERT_NE(stream, 0U) << library.ErrorGetCode();
        const auto seconds = [&](QWORD bytes) {
            return library.ChannelBytes2Seconds(stream, bytes);
        };
        EXPECT_NEAR(seconds(library.ChannelGetLength(stream, 0)), kTrackSeconds, 0.15);
        EXPECT_TRUE(
            library.ChannelSetPosition(stream, library.ChannelSeconds2Bytes(stream, 1.5), 0));
        library.ChannelPlay(stream, false);
        // asked once a turn: it goes from one to the other between two questions
        for (DWORD activity = BASS_ACTIVE_PLAYING;
             activity == BASS_ACTIVE_PLAYING || activity == BASS_ACTIVE_STALLED;
             activity = library.ChannelIsActive(stream))
            std::this_thread::yield();
        EXPECT_NEAR(seconds(library.ChannelGetPosition(stream, 0)), kTrackSeconds, 0.15);
        library.StreamFree(stream);
    }
}

TEST(LocalFile, PausesAndStops) {
    Listener listener;
    AudioLibrary& library = listener.library();
    const HSTREAM stream = listener.openFile(trackPath(Track::Wav));
    ASSERT_NE(stream, 0U);
    EXPECT_EQ(library.ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
    EXPECT_FALSE(library.ChannelPause(stream));
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_NOPLAY);
    library.ChannelPlay(stream, false);
    EXPECT_EQ(library.ChannelIsActive(stream), BASS_ACTIVE_PLAYING);
    library.ChannelPause(stream);
    EXPECT_EQ(library.ChannelIsActive(stream), BASS_ACTIVE_PAUSED);
    library.ChannelStop(stream);
    EXPECT_EQ(library.ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
}

TEST(LocalFile, EachCreateFunctionTakesItsFormats) {
    Listener listener;
    AudioLibrary& library = listener.library();
    using Create = HSTREAM (AudioLibrary::*)(const void*, DWORD);
    const std::pair<Track, Create> takes[] = {
        {Track::Aiff, &AudioLibrary::StreamCreateFile},
        {Track::Adts, &AudioLibrary::AAC_StreamCreateFile},
        {Track::Flac, &AudioLibrary::FLAC_StreamCreateFile},
        {Track::M4a, &AudioLibrary::MP4_StreamCreateFile},
        {Track::Opus, &AudioLibrary::OPUS_StreamCreateFile},
    };
    for (const auto& [which, create] : takes) {
        SCOPED_TRACE(static_cast<int>(which));
        const QString path = trackPath(which);
        EXPECT_NE((library.*create)(path.utf16(), BASS_UNICODE), 0U) << library.ErrorGetCode();
        EXPECT_EQ(library.WMA_StreamCreateFile(path.utf16(), BASS_UNICODE), 0U);
        EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_FILEFORM);
    }
    EXPECT_EQ(library.StreamCreateFile("/no/such/file", 0), 0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_FILEOPEN);
    EXPECT_EQ(library.StreamCreateFile("/", 0), 0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_FILEOPEN);
}

TEST(Session, AnswersWithTheRightCodes) {
    FfmpegLibrary library;
    EXPECT_EQ(library.StreamCreateFile("x", 0), 0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_INIT);
    EXPECT_FALSE(library.Init(500, 44100, 0));
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_DEVICE);
    EXPECT_TRUE(library.Init(0, 44100, 0));
    EXPECT_FALSE(library.Init(0, 44100, 0));
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_ALREADY);
    EXPECT_TRUE(library.SetDevice(0));
    EXPECT_TRUE(library.SetDevice(~DWORD{0}));
    EXPECT_EQ(library.GetDevice(), 0U);
    BASS_DEVICEINFO info{};
    ASSERT_TRUE(library.GetDeviceInfo(0, &info));
    EXPECT_STREQ(info.name, "No sound");
    EXPECT_FALSE(library.GetDeviceInfo(500, &info));
    EXPECT_TRUE(library.SetConfig(BASS_CONFIG_GVOL_STREAM, 3700));
    EXPECT_EQ(library.GetConfig(BASS_CONFIG_GVOL_STREAM), 3700U);
    EXPECT_FALSE(library.ChannelPlay(77, false));
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_HANDLE);
    EXPECT_TRUE(library.Free());
    EXPECT_FALSE(library.Free());
}

TEST(Session, AnAutofreeStreamGoesAfterItsEnd) {
    Listener listener;
    const QString path = trackPath(Track::Wav);
    const HSTREAM stream =
        listener.library().StreamCreateFile(path.utf16(), BASS_UNICODE | BASS_STREAM_AUTOFREE);
    ASSERT_NE(stream, 0U);
    std::atomic<bool> isFreed{false};
    const auto freed = [](HSYNC, DWORD, DWORD, void* user) {
        static_cast<std::atomic<bool>*>(user)->store(true);
    };
    listener.library().ChannelSetSync(stream, BASS_SYNC_FREE, 0, freed, &isFreed);
    listener.library().ChannelPlay(stream, false);
    for (int n = 0; n < 10000 && !isFreed; ++n)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(isFreed);
    while (listener.library().StreamFree(stream)) {
    }
    EXPECT_EQ(listener.library().ErrorGetCode(), BASS_ERROR_HANDLE);
}
