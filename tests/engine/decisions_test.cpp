#include "engine/connect_plan.h"
#include "engine/library_errors.h"
#include "engine/reconnect_policy.h"
#include "engine/sound_options.h"
#include "engine/stream_headers.h"
#include "engine/time_shift.h"
#include "engine/title_damper.h"
#include "engine/track_change.h"

#include <gtest/gtest.h>

#include <set>

using namespace BASS;
using namespace std::chrono_literals;

TEST(ConnectPlan, ChoosesTheCreateFunction) {
    const struct {
        const char* format;
        const char* address;
        StreamKind kind;
    } cases[] = {
        {"", "http://h/live", StreamKind::Generic},
        {"M4A", "http://h/live", StreamKind::Mp4},
        {"", "http://h/a.m4a?x", StreamKind::Mp4},
        {"flac", "http://h/live", StreamKind::Flac},
        {"", "http://h/myflacstream", StreamKind::Flac},
        {"OGG", "http://h/a.flac", StreamKind::Generic},
        {"", "http://h/a.m3u8", StreamKind::Hls},
        {"", "http://h/a.opus", StreamKind::Opus},
        {"", "http://h/a.aac", StreamKind::Generic},
        {"", "mms://h/a", StreamKind::Wma},
        {"", "rtsp://h/a", StreamKind::Wma},
        {"MP3", "http://h/a.wma", StreamKind::Wma},
    };
    for (const auto& c : cases)
        EXPECT_EQ(kindFor(QString::fromLatin1(c.format), QString::fromLatin1(c.address)), c.kind)
            << c.address;
}

TEST(ConnectPlan, KnowsLocalAddressesAndHidesCredentials) {
    EXPECT_TRUE(isLocalAddress(QStringLiteral("/music/a.mp3")));
    EXPECT_TRUE(isLocalAddress(QStringLiteral("FILE:///music/a.mp3")));
    EXPECT_FALSE(isLocalAddress(QStringLiteral("icy://h/")));
    EXPECT_EQ(localPath(QStringLiteral("file:///music/a%20b.mp3")),
              QStringLiteral("/music/a b.mp3"));
    EXPECT_EQ(rewrittenAddress(QStringLiteral("icyx://h/a")), QStringLiteral("http://h/a"));
    EXPECT_EQ(rewrittenAddress(QStringLiteral("icy://h/a")), QStringLiteral("http://h/a"));
    EXPECT_FALSE(withoutCredentials(QStringLiteral("http://me:secret@h/a"))
                     .contains(QLatin1String("secret")));
    EXPECT_EQ(ordinalWord(3), QStringLiteral("third"));
    EXPECT_EQ(ordinalWord(11), QStringLiteral("11"));
}

TEST(TrackChange, TakesRealTitlesOnly) {
    const TrackChangeContext context{QStringLiteral("Radio One"), QStringLiteral("R1 Live")};
    const Song running = songFromTrack(QStringLiteral("Ana - Song"));
    const struct {
        const char* track;
        bool isNew;
    } cases[] = {
        {"Ana - Other", true},
        {"Ana - Song", false},
        {"  ana -  SONG ", false},
        {"", false},
        {"-", false},
        {"radio one", false},
        {"R1 Live", false},
        {"News", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isNewTrack(running, songFromTrack(QString::fromLatin1(c.track)), context),
                  c.isNew)
            << c.track;
}

TEST(LibraryErrors, FirstRowOfACodeWins) {
    EXPECT_EQ(libraryErrorText(37), QStringLiteral("Requested data is not available"));
    EXPECT_EQ(libraryErrorText(14), QStringLiteral("Already using the requested device. "));
    EXPECT_EQ(libraryErrorText(12), QStringLiteral("No CD fouind in the drive"));
    EXPECT_EQ(libraryErrorText(4711), QStringLiteral("Unknown Library Error"));
    EXPECT_EQ(channelTypeName(BASS_CTYPE_STREAM_MP4), QStringLiteral("AAC (MP4)"));
    EXPECT_TRUE(channelTypeName(0x77777).isEmpty());
}

TEST(ReconnectPolicy, IsQuickAtFirstAndPatientLater) {
    EXPECT_EQ(reconnectPause(1, 0s), 500ms);
    EXPECT_LE(reconnectPause(9, 25s), 500ms);
    EXPECT_EQ(reconnectPause(99, 1h), 30s);
    auto last = 0ms;
    for (auto outage = 30s; outage < 20min; outage += 10s) {
        const auto pause = reconnectPause(50, outage);
        EXPECT_GE(pause, last);
        last = pause;
    }
}

TEST(TimeShiftTest, AddsUpThePauses) {
    TimeShift shift;
    EXPECT_EQ(shift.behind(99s), 0s);
    shift.pause(100s);
    shift.pause(103s); // once more changes nothing
    EXPECT_EQ(shift.behind(110s), 10s);
    shift.resume(110s);
    EXPECT_EQ(shift.behind(500s), 10s);
    shift.pause(500s);
    EXPECT_EQ(shift.behind(505s), 15s);
    shift.reset();
    EXPECT_FALSE(shift.isPaused());
    EXPECT_EQ(shift.behind(600s), 0s);
}

TEST(TitleDamperTest, ASloganCutsOnce) {
    TitleDamper damper;
    const auto isTrack = [&damper](const char* track, std::chrono::seconds at) {
        const QString text = QString::fromLatin1(track);
        const bool isNew = !damper.isInterjection(text, at);
        if (isNew)
            damper.accept(text, at);
        return isNew;
    };
    EXPECT_TRUE(isTrack("Song 1", 0s));
    EXPECT_TRUE(isTrack("Best hits!", 60s)); // could be a song
    EXPECT_TRUE(isTrack("Song 1", 70s));     // now it is known for what it is
    EXPECT_FALSE(isTrack("Best hits!", 100s));
    EXPECT_TRUE(isTrack("Song 2", 300s));
    EXPECT_FALSE(isTrack("Best hits!", 310s));
    EXPECT_TRUE(isTrack("Song 1", 500s));
    EXPECT_TRUE(isTrack("Song 2", 700s)); // two songs in turn are two songs
    EXPECT_TRUE(isTrack("Song 1", 900s));
}

TEST(StreamHeadersTest, ReadsWhatStationsSay) {
    const char list[] = "HTTP/1.0 200 OK\0ICY-Name: R\xE4"
                        "dio \0icy-br:128,64\0icy-url:http://x\0"
                        "Content-Type: audio/mpeg\0broken line\0";
    const StreamHeaders headers = parseStreamHeaders(list);
    EXPECT_EQ(headers.name, QStringLiteral("Rädio"));
    EXPECT_EQ(headers.bitrate, 128);
    EXPECT_EQ(headers.website, QStringLiteral("http://x"));
    EXPECT_EQ(parseStreamHeaders(nullptr).bitrate, 0);
}

TEST(SoundOptions, EqualizerTextsComeBackAsTheyWere) {
    for (const EqualizerPreset& preset : equalizerPresets()) {
        EXPECT_EQ(equalizerText(preset.bandsDb), QLatin1String(preset.name));
        EXPECT_EQ(bandsFromText(QLatin1String(preset.name)), preset.bandsDb) << preset.name;
    }
    const EqualizerBands own{1.5F, -2.0F, 0, 0, 0, 0, 0, 0, 0, 12.0F};
    EXPECT_EQ(bandsFromText(equalizerText(own)), own);
    EXPECT_EQ(presetOf(own), -1);
    const struct {
        const char* text;
        float first;
    } cases[] = {
        {"", 0.0F},
        {"rock", 5.0F},
        {"99;0;0;0;0;0;0;0;0;0", 12.0F},
        {"1;2;3", 0.0F},
        {"1;x;0;0;0;0;0;0;0;0", 0.0F},
        {"nan;0;0;0;0;0;0;0;0;0", 0.0F},
        {"1;0;0;0;0;0;0;0;0;0;0", 0.0F},
    };
    for (const auto& test : cases)
        EXPECT_EQ(bandsFromText(QLatin1String(test.text))[0], test.first) << test.text;
}
