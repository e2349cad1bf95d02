#include "audio/encoding.h"
#include "audio/listener.h"
#include "audio/tracks.h"
#include "support/disk_microphone.h"

#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace BASS;

TEST(Capture, ARecordingDeviceIsPlayedMeasuredAndEncoded) {
    const DiskMicrophone microphone(30.0);
    Listener listener;
    AudioLibrary& library = listener.library();
    BASS_DEVICEINFO device{};
    ASSERT_TRUE(library.RecordGetDeviceInfo(0, &device));
    EXPECT_NE(device.flags & BASS_DEVICE_DEFAULT, 0U);
    const HSTREAM stream = library.StreamCreateRecordingDevice(-1, BASS_SAMPLE_FLOAT);
    ASSERT_NE(stream, 0U) << library.ErrorGetCode();
    BASS_CHANNELINFO info{};
    ASSERT_TRUE(library.ChannelGetInfo(stream, &info));
    EXPECT_EQ(info.ctype, BASS_CTYPE_RECORD);
    EXPECT_EQ(info.freq, 44100U);
    EXPECT_EQ(info.chans, 2U);
    Encoding encoding;
    const HENCODE encoder =
        library.Encode_FLAC_Start(stream, "", BASS_ENCODE_FP_24BIT, &Encoding::onBytes, &encoding);
    ASSERT_TRUE(library.ChannelPlay(stream, false));
    const auto isHeard = [&library, stream] {
        const DWORD level = library.ChannelGetLevel(stream);
        return std::abs(static_cast<int>(level & 0xFFFFU) - 16384) < 100 &&
               std::abs(static_cast<int>(level >> 16) - 8192) < 100;
    };
    EXPECT_TRUE(QTest::qWaitFor(isHeard, 10000));
    const auto seconds = [&library, stream] {
        return library.ChannelBytes2Seconds(stream,
                                            library.ChannelGetPosition(stream, BASS_POS_BYTE));
    };
    EXPECT_TRUE(QTest::qWaitFor([&seconds] { return seconds() > 0.5; }, 10000));
    EXPECT_FALSE(library.ChannelSetPosition(stream, 0, BASS_POS_BYTE)); // there is no way back
    library.StreamFree(stream);

    const QByteArray file = decodedByFfmpeg(encoding.file(encoder, "flac"));
    ASSERT_GT(file.size(), 44100 * 8 / 4);
    float most = 0.0F;
    for (int at = 0; at + 8 <= file.size(); at += 8) {
        float left = 0.0F;
        std::memcpy(&left, file.constData() + at, sizeof(left));
        most = std::max(most, std::abs(left));
    }
    EXPECT_NEAR(most, 0.5F, 0.001F);
}

TEST(Capture, WithoutADeviceItSaysSo) {
    Listener listener; // SDL_AUDIODRIVER=dummy: no driver at all
    AudioLibrary& library = listener.library();
    BASS_DEVICEINFO device{};
    EXPECT_FALSE(library.RecordGetDeviceInfo(0, &device));
    EXPECT_EQ(library.StreamCreateRecordingDevice(-1, 0), 0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_DEVICE);
    EXPECT_EQ(library.StreamCreateRecordingDevice(7, 0), 0U);
}
