#include "recording/station_options.h"

#include <gtest/gtest.h>

namespace {

using namespace BASS;

RecordingOptions settings() {
    RecordingOptions options;
    options.folder = QStringLiteral("/music");
    options.patternSplit = QStringLiteral("%track%");
    options.patternNoSplit = QStringLiteral("%title%");
    options.dateFormat = QStringLiteral("dd.MM.yy");
    options.encoder = 1;
    options.encodingBitrate = 128;
    options.isSameKept = true;
    return options;
}

RecInfo station() {
    RecInfo info;
    info.isEnabled = true;
    info.isSameKept = false;
    info.recMode = RecInfo::Mode::NoSplitting;
    info.recFolder = QStringLiteral("/jazz");
    info.recFormat = QStringLiteral("%artist%");
    info.recDateFormat = QStringLiteral("yyyy");
    info.recType = EncoderMp3;
    info.recParams = QStringLiteral("--cbr -b256");
    info.splitDelaySecs = 3;
    return info;
}

} // namespace

TEST(StationOptions, CountOnlyWhereTheyAreSwitchedOn) {
    RecInfo info = station();
    info.isEnabled = false;
    info.hasOwnFormat = info.hasOwnEncoding = true;
    EXPECT_EQ(withStationOptions(settings(), info).folder, QStringLiteral("/music"));
    EXPECT_EQ(stationRecordMode(RecordMode::FromSettings, info), RecordMode::FromSettings);
    info.isEnabled = true;
    info.hasOwnFormat = info.hasOwnEncoding = false;
    const RecordingOptions options = withStationOptions(settings(), info);
    EXPECT_EQ(options.folder, QStringLiteral("/music"));
    EXPECT_EQ(options.encodingBitrate, 128);
    EXPECT_TRUE(options.isSameKept);
    EXPECT_EQ(options.splitDelay, std::chrono::seconds(3));
}

TEST(StationOptions, TakeThePlaceOfTheSettings) {
    RecInfo info = station();
    info.hasOwnFormat = info.hasOwnEncoding = true;
    RecordingOptions options = settings();
    options.mode = RecordMode::NoSplit;
    options.splitDelay = std::chrono::milliseconds(700); // the station's own in milliseconds
    options = withStationOptions(options, info);
    EXPECT_EQ(options.folder, QStringLiteral("/jazz"));
    EXPECT_EQ(options.patternNoSplit, QStringLiteral("%artist%"));
    EXPECT_EQ(options.patternSplit, QStringLiteral("%track%"));
    EXPECT_EQ(options.dateFormat, QStringLiteral("yyyy"));
    EXPECT_EQ(options.encoderParams, QStringLiteral("--cbr -b256"));
    EXPECT_EQ(options.encodingBitrate, 256);
    EXPECT_FALSE(options.isSameKept);
    EXPECT_EQ(options.splitDelay, std::chrono::milliseconds(700));
}

TEST(StationOptions, TheUsersOwnCommandGoesBeforeTheStationsMode) {
    const RecInfo info = station();
    EXPECT_EQ(stationRecordMode(RecordMode::FromSettings, info), RecordMode::NoSplit);
    EXPECT_EQ(stationRecordMode(RecordMode::Split, info), RecordMode::Split);
    EXPECT_EQ(stationRecordMode(RecordMode::SingleSong, info), RecordMode::SingleSong);
}
