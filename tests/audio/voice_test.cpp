#include "audio/ffmpeg/mixer.h"
#include "audio/ffmpeg/spsc_ring.h"
#include "audio/ffmpeg/voice.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <numeric>
#include <thread>
#include <vector>

using namespace BASS;

namespace {

constexpr std::uint32_t kRate = 44100;
constexpr std::size_t kBlock = 1024;

class VoiceTest : public ::testing::Test {
  protected:
    /// Constant full-scale frames.
    void write(std::size_t frames) {
        const std::vector<float> ones(frames * 2, 1.0F);
        ASSERT_EQ(voice.write(ones.data(), frames), frames);
    }
    std::vector<float> render() {
        std::vector<float> out(kBlock * 2, 0.0F);
        voice.render(out.data(), kBlock);
        return out;
    }

    Semaphore signal;
    Voice voice{kRate, signal};
};

} // namespace

TEST(SpscRing, PassesEverythingInOrderBetweenTwoThreads) {
    SpscRing<int> ring(64);
    constexpr int kCount = 200000;
    std::thread writer([&ring] {
        std::vector<int> batch(37);
        for (int next = 0; next < kCount;) {
            std::iota(batch.begin(), batch.end(), next);
            const auto most =
                std::min<std::size_t>(batch.size(), static_cast<std::size_t>(kCount - next));
            const std::size_t done = ring.write(batch.data(), most);
            next += static_cast<int>(done);
            if (done == 0)
                std::this_thread::yield();
        }
    });
    int expected = 0;
    while (expected < kCount) {
        const std::size_t got = ring.consume(29, [&expected](const int* data, std::size_t count) {
            for (std::size_t n = 0; n < count; ++n)
                ASSERT_EQ(data[n], expected++);
        });
        if (got == 0)
            std::this_thread::yield();
    }
    writer.join();
    EXPECT_EQ(ring.readable(), 0U);
}

TEST_F(VoiceTest, StallsAndGoesOnWhenRefilled) {
    write(kBlock + 10);
    voice.setMode(Voice::Mode::Playing);
    render();
    EXPECT_EQ(voice.takeEvents(), 0U);
    EXPECT_EQ(render()[2 * 9], 1.0F); // the rest is heard, then silence
    EXPECT_EQ(voice.takeEvents(), Voice::kStalled);
    EXPECT_TRUE(voice.isStalled());
    write(kRate / 4);
    EXPECT_EQ(render()[0], 0.0F); // too little to go on
    EXPECT_EQ(voice.missingPercent(), 50U);
    EXPECT_EQ(voice.heardFrame(), kBlock + 10);
    write(kRate / 4);
    EXPECT_EQ(render()[0], 1.0F);
    EXPECT_EQ(voice.takeEvents(), Voice::kResumed);
    EXPECT_EQ(voice.heardFrame(), 2 * kBlock + 10);
}

TEST_F(VoiceTest, EndsOnceWithoutStalling) {
    write(kBlock / 2);
    voice.armTag(kBlock); // a title that nobody hears any more is still told
    voice.setSourceEnded(true);
    voice.setMode(Voice::Mode::Playing);
    render();
    EXPECT_EQ(voice.takeEvents(), Voice::kEnded | Voice::kTagDue);
    render();
    EXPECT_EQ(voice.takeEvents(), 0U);
    EXPECT_TRUE(voice.hasEnded());
    voice.restartAt(100);
    write(2 * kBlock);
    EXPECT_EQ(render()[0], 1.0F);
    EXPECT_EQ(voice.heardFrame(), 100 + kBlock);
}

TEST_F(VoiceTest, AJumpDropsWhatWasNotHeard) {
    write(5000);
    voice.restartAt(44100);
    EXPECT_EQ(voice.heardFrame(), 44100U);
    const std::vector<float> halves(kBlock * 2, 0.5F);
    voice.write(halves.data(), kBlock);
    voice.setMode(Voice::Mode::Playing);
    EXPECT_EQ(render()[0], 0.5F);
}

TEST_F(VoiceTest, VolumeCommandsFoldUntilTheOutputMeetsThem) {
    write(8 * kBlock);
    voice.setVolume(0.0F); // as a fade-in begins: at once, before the output runs
    voice.slideVolume(0.5F, 1000 * kBlock / kRate); // about a block
    voice.setMode(Voice::Mode::Playing);
    EXPECT_TRUE(voice.volume().isSliding());
    const auto first = render();
    EXPECT_LT(first[0], 0.01F);
    for (std::size_t n = 2; n < 2 * 1000; n += 2)
        ASSERT_GE(first[n], first[n - 2]);
    const auto second = render();
    EXPECT_EQ(second[2 * kBlock - 1], 0.5F);
    EXPECT_EQ(voice.takeEvents(), Voice::kSlideEnded);
    EXPECT_FALSE(voice.volume().isSliding());
    EXPECT_EQ(voice.volume().current(), 0.5F);

    voice.slideVolume(1.0F, 10000);
    render();
    voice.slideVolume(0.0F, 5); // replaces the slide under way: one end, not two
    render();
    render();
    EXPECT_EQ(voice.takeEvents(), Voice::kSlideEnded);
    EXPECT_EQ(voice.volume().current(), 0.0F);
}

TEST_F(VoiceTest, TheMixerAddsAndLimits) {
    Mixer mixer;
    Voice second{kRate, signal};
    const std::vector<float> loud(kBlock * 2, 10.0F);
    write(kBlock);
    second.write(loud.data(), kBlock);
    voice.setMode(Voice::Mode::Playing);
    second.setMode(Voice::Mode::Playing);
    ASSERT_TRUE(mixer.add(voice));
    ASSERT_TRUE(mixer.add(second));
    std::vector<float> out(kBlock * 2);
    mixer.render(out.data(), kBlock);
    EXPECT_EQ(out[100], 1.0F); // eleven times full scale, limited
    EXPECT_EQ(second.level(), 0x80008000U);
    mixer.remove(voice);
    mixer.remove(second);
    mixer.render(out.data(), kBlock);
    EXPECT_EQ(out[100], 0.0F);
}

TEST_F(VoiceTest, TheSpectrumShowsASineAtItsPlaceWhileItIsAskedFor) {
    constexpr std::size_t kBin = 93; // about 2 kHz
    constexpr double kStep = 2.0 * 3.14159265358979323846 * kBin / HeardSpectrum::kFrames;
    std::vector<float> sine(kBlock * 2);
    std::size_t at = 0;
    const auto hear = [&](std::size_t blocks) {
        for (; blocks > 0; --blocks) {
            for (std::size_t n = 0; n < kBlock; ++n)
                sine[2 * n] = sine[2 * n + 1] =
                    static_cast<float>(0.5 * std::sin(kStep * static_cast<double>(at++)));
            ASSERT_EQ(voice.write(sine.data(), kBlock), kBlock);
            render();
        }
    };
    std::vector<float> bins(HeardSpectrum::kBins, -1.0F);
    voice.setMode(Voice::Mode::Playing);
    hear(3);
    EXPECT_FALSE(voice.spectrum(bins.data())); // nothing was gathered before the first question
    hear(1);
    EXPECT_FALSE(voice.spectrum(bins.data()));
    hear(1);
    ASSERT_TRUE(voice.spectrum(bins.data()));
    for (std::size_t bin = 0; bin < bins.size(); ++bin) {
        const float expected = bin == kBin                          ? 0.5F
                               : bin + 1 == kBin || bin == kBin + 1 ? 0.25F
                                                                    : 0.0F;
        EXPECT_NEAR(bins[bin], expected, 0.001) << bin;
    }
    hear(50); // more than a second
    EXPECT_FALSE(voice.spectrum(bins.data()));
    hear(2);
    EXPECT_TRUE(voice.spectrum(bins.data()));
}

TEST_F(VoiceTest, RemovingWaitsForThePassUnderWay) {
    Mixer mixer;
    std::atomic<bool> isStopping{false};
    std::thread output([&] {
        std::vector<float> out(kBlock * 2);
        while (!isStopping)
            mixer.render(out.data(), kBlock);
    });
    for (int n = 0; n < 200; ++n) {
        auto passing = std::make_unique<Voice>(kRate, signal);
        passing->setMode(Voice::Mode::Playing);
        ASSERT_TRUE(mixer.add(*passing));
        mixer.remove(*passing); // freed right after: a sanitizer sees a late touch
    }
    isStopping = true;
    output.join();
    EXPECT_TRUE(mixer.isEmpty());
}
