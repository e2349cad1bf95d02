#include "audio/encoding.h"
#include "audio/ffmpeg/link_decoder.h"
#include "audio/listener.h"
#include "audio/loopback_server.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>

using namespace BASS;

namespace {

constexpr std::size_t kSkipFrom = 40000; // frames
constexpr std::size_t kSkipTo = 80000;

ByteSource sourceOf(const QByteArray& bytes, int& at) {
    ByteSource source;
    source.read = [&bytes, &at](std::uint8_t* out, int max) {
        const int count = std::min(max, bytes.size() - at);
        std::memcpy(out, bytes.constData() + at, static_cast<std::size_t>(count));
        at += count;
        return count;
    };
    return source;
}

/// Decodes all of it. With `isSkipped` the middle passes in silence, and of that the last frames,
/// `again`, are asked for after all.
std::vector<float>
decode(Track which, StreamFormat format, bool isSkipped = false, std::size_t again = 0) {
    const QByteArray& bytes = track(which);
    int at = 0;
    LinkDecoder decoder(44100, sourceOf(bytes, at));
    std::vector<float> result;
    EXPECT_TRUE(decoder.open(format));
    for (;;) {
        const std::size_t frames = result.size() / 2;
        if (isSkipped && frames >= kSkipFrom && frames < kSkipTo) {
            decoder.skip();
        } else if (isSkipped && frames >= kSkipTo) {
            isSkipped = false;
            result.resize(result.size() - 2 * decoder.rejoin(again));
        }
        const auto step = decoder.step();
        const auto& samples = decoder.block().samples;
        result.resize(result.size() + 2 * decoder.block().silence);
        if (step == LinkDecoder::Step::Audio || step == LinkDecoder::Step::End)
            result.insert(result.end(), samples.begin(), samples.end());
        if (step != LinkDecoder::Step::Audio && step != LinkDecoder::Step::Nothing)
            return result;
    }
}

} // namespace

TEST(Unheard, SkippedTimePassesExactlyAndSoundIsBackAtOnce) {
    const std::pair<Track, StreamFormat> cases[] = {
        {Track::Mp3, StreamFormat::Mpeg},
        {Track::Adts, StreamFormat::Adts},
        {Track::OggFlac, StreamFormat::OggFlac},
        {Track::Vorbis, StreamFormat::OggVorbis},
    };
    constexpr std::size_t kPacket = 5000; // frames of the longest packet and of the fade-in
    for (const auto& [which, format] : cases) {
        for (const std::size_t again : {std::size_t{0}, std::size_t{20000}}) {
            SCOPED_TRACE(static_cast<int>(which));
            SCOPED_TRACE(again);
            const std::vector<float> whole = decode(which, format);
            const std::vector<float> skipped = decode(which, format, true, again);
            ASSERT_EQ(skipped.size(), whole.size());
            const std::size_t back = kSkipTo - again;
            EXPECT_TRUE(std::all_of(skipped.begin() + 2 * (kSkipFrom + kPacket),
                                    skipped.begin() + 2 * back,
                                    [](float sample) { return sample == 0.0F; }));
            float greatest = 0.0F;
            for (std::size_t n = 2 * (back + kPacket); n < whole.size(); ++n)
                greatest = std::max(greatest, std::abs(whole[n] - skipped[n]));
            EXPECT_LT(greatest, 1e-5F);
        }
    }
}

/// Where there is no device the clock takes long steps while all is muted, which find enough.
TEST(Unheard, TurningTheSoundOffAndOnStallsNothing) {
    const QByteArray audio = track(Track::Mp3) + track(Track::Mp3);
    LoopbackServer server([&audio](Connection& connection) {
        connection.send(answer("ICY 200 OK", {"icy-name: A"}) + audio);
    });
    Listener listener(1);
    AudioLibrary& library = listener.library();
    library.ChannelPlay(listener.open(server.url()), false);
    for (int n = 0; n < 10; ++n) {
        const bool isMuted = n % 2 == 0;
        library.SetConfig(BASS_CONFIG_GVOL_STREAM, isMuted ? 0 : 10000);
        std::this_thread::sleep_for(std::chrono::milliseconds(isMuted ? 700 : 130));
    }
    const std::lock_guard lock(listener.m_mutex);
    EXPECT_TRUE(std::none_of(listener.syncs.begin(), listener.syncs.end(), [](const auto& sync) {
        return sync.type == BASS_SYNC_STALL;
    }));
}

TEST(Unheard, TitlesGoOnAndAnEncoderStillGetsTheSound) {
    const QByteArray audio = track(Track::Mp3);
    LoopbackServer server([&audio](Connection& connection) {
        connection.send(answer("ICY 200 OK", {"icy-metaint: 1000"}) +
                        withTitles(audio, 1000, {{0, "A"}, {30000, "B"}}));
    });
    const auto play = [&server](Listener& listener, bool isMuted) {
        AudioLibrary& library = listener.library();
        library.SetConfig(BASS_CONFIG_GVOL_STREAM, isMuted ? 0 : 10000);
        const HSTREAM stream = listener.open(server.url());
        library.ChannelPlay(stream, false);
        EXPECT_TRUE(listener.waitFor(BASS_SYNC_END));
        return stream;
    };
    Listener heard;
    Listener muted;
    play(heard, false);
    const HSTREAM stream = play(muted, true);
    const auto secondsOfB = [](const Listener& listener) {
        const auto place =
            std::find_if(listener.syncs.begin(), listener.syncs.end(), [](const auto& sync) {
                return sync.type == BASS_SYNC_META && sync.meta.find('B') != std::string::npos;
            });
        return place != listener.syncs.end() ? place->seconds : -1.0;
    };
    // when it is told, not where it stands: while muted the output goes on in steps of half a
    // second
    EXPECT_NEAR(secondsOfB(muted), secondsOfB(heard), 0.7);
    EXPECT_NEAR(muted.library().ChannelBytes2Seconds(
                    stream, muted.library().ChannelGetPosition(stream, BASS_POS_BYTE)),
                kTrackSeconds,
                0.15);

    Encoding encoding;
    Listener recorder;
    AudioLibrary& library = recorder.library();
    library.SetConfig(BASS_CONFIG_GVOL_STREAM, 0);
    const HSTREAM file = recorder.openFile(trackPath(Track::Wav));
    const HENCODE encoder = library.Encode_FLAC_Start(file, "", 0, &Encoding::onBytes, &encoding);
    library.ChannelPlay(file, false);
    ASSERT_TRUE(recorder.waitFor(BASS_SYNC_END));
    library.StreamFree(file);
    const QByteArray all = decodedByFfmpeg(trackPath(Track::Wav));
    const QByteArray got = decodedByFfmpeg(encoding.file(encoder, "flac"));
    ASSERT_GT(got.size(), all.size() / 2);
    EXPECT_TRUE(all.endsWith(got));
}
