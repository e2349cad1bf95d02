#include "audio/effects/decibel.h"
#include "audio/effects/effect_chain.h"
#include "audio/encoding.h"
#include "audio/listener.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>

using namespace BASS;

namespace {

constexpr int kRate = 44100;
constexpr std::size_t kBlock = 1152; // of an MP3 frame
constexpr double kPi = 3.14159265358979323846;

using Samples = std::vector<float>;

/// Both sides, the right one with `rightFactor`.
Samples sine(double frequency, double amplitude, double seconds, double rightFactor = 1.0) {
    Samples result(2 * static_cast<std::size_t>(seconds * kRate));
    for (std::size_t n = 0; n < result.size() / 2; ++n) {
        const double value =
            amplitude * std::sin(2.0 * kPi * frequency * static_cast<double>(n) / kRate);
        result[2 * n] = static_cast<float>(value);
        result[2 * n + 1] = static_cast<float>(rightFactor * value);
    }
    return result;
}

Samples noise(double amplitude, double seconds) {
    std::mt19937 random(42);
    std::uniform_real_distribution<float> value(-1.0F, 1.0F);
    Samples result(2 * static_cast<std::size_t>(seconds * kRate));
    for (float& sample : result)
        sample = static_cast<float>(amplitude) * value(random);
    return result;
}

void process(EffectChain& chain, Samples& samples, std::size_t from = 0) {
    for (std::size_t at = from; at < samples.size(); at += 2 * kBlock)
        chain.process(samples.data() + at, std::min(2 * kBlock, samples.size() - at) / 2);
}

/// Of the left side's last second.
double levelDb(const Samples& samples) {
    double sum = 0.0;
    for (std::size_t n = samples.size() - 2 * kRate; n < samples.size(); n += 2)
        sum += static_cast<double>(samples[n]) * static_cast<double>(samples[n]);
    return toDecibel(std::sqrt(sum / kRate));
}

double lufs(const Samples& samples, std::size_t from = 0) {
    LoudnessMeter meter(kRate);
    meter.add(samples.data() + from, (samples.size() - from) / 2);
    return meter.lufs();
}

float peak(const Samples& samples) {
    float result = 0.0F;
    for (const float sample : samples)
        result = std::isnan(sample) ? std::numeric_limits<float>::infinity()
                                    : std::max(result, std::abs(sample));
    return result;
}

using Bands = std::array<float, EffectSettings::kBands>;

EffectSettings withBands(const Bands& bands, float preamp = 0.0F) {
    EffectSettings settings;
    settings.equalizer = {true, preamp, bands};
    return settings;
}

EffectSettings boost(float thresholdDb, float ratio, float makeUpDb) {
    EffectSettings settings;
    settings.compressor = {true, thresholdDb, ratio, makeUpDb};
    return settings;
}

} // namespace

TEST(Effects, EachBandHasTheGainThatIsAskedFor) {
    const Bands cases[] = {
        {12, 0, 0, 0, 0, 0, 0, 0, 0, 0},
        {0, 0, 0, 0, 0, -12, 0, 0, 0, 0},
        {0, 0, 0, 0, 0, 0, 0, 0, 0, 12},
        {6, 6, 6, 6, 6, 6, 6, 6, 6, 6},
        {9, 6, 2, -3, -6, -6, -3, 2, 6, 9},
        {5, -5, 5, -5, 5, -5, 5, -5, 5, -5},
    };
    for (const Bands& bands : cases)
        for (std::size_t band = 0; band < bands.size(); ++band) {
            EffectChain chain(kRate);
            chain.set(withBands(bands, -3.0F));
            const Samples before =
                sine(static_cast<double>(EffectSettings::kFrequencies[band]), 0.05, 2.0);
            Samples after = before;
            process(chain, after);
            EXPECT_NEAR(
                levelDb(after) - levelDb(before), static_cast<double>(bands[band]) - 3.0, 0.25)
                << "band " << band << " of " << &bands - cases;
        }
}

TEST(Effects, NoChangeClicks) {
    EffectSettings mono;
    mono.isMono = true;
    EffectSettings swapped;
    swapped.isSwapped = true;
    EffectSettings wide;
    wide.stereoSeparation = 100.0F;
    EffectSettings automatic;
    automatic.isAutoVolume = true;
    automatic.autoVolumeStartDb = -12.0F;
    const EffectSettings none;
    const struct {
        const char* name;
        EffectSettings from;
        EffectSettings to;
    } cases[] = {
        {"band up", none, withBands({0, 12, 0, 0, 0, 0, 0, 0, 0, 0})},
        {"band down", none, withBands({0, -12, 0, 0, 0, 0, 0, 0, 0, 0})},
        {"off again", withBands({12, 12, 12, 12, 12, 12, 12, 12, 12, 12}), none},
        {"pre-amplifier", none, withBands({}, -12.0F)},
        {"boost", none, boost(-24.0F, 3.0F, 12.0F)},
        {"boost off", boost(-24.0F, 3.0F, 12.0F), none},
        {"mono", none, mono},
        {"swapped", none, swapped},
        {"wide", none, wide},
        {"automatic volume", none, automatic},
    };
    for (const auto& test : cases) {
        EffectChain chain(kRate);
        chain.set(test.from);
        Samples samples = sine(60.0, 0.2, 3.0, -0.3);
        const std::size_t change = 2 * 20 * kBlock;
        Samples head(samples.begin(), samples.begin() + change);
        process(chain, head);
        std::copy(head.begin(), head.end(), samples.begin());
        chain.set(test.to);
        process(chain, samples, change);
        const auto bend = [&samples](std::size_t from, std::size_t to) {
            double most = 0.0;
            for (std::size_t n = from + 4; n < to; ++n)
                most = std::max(most,
                                static_cast<double>(
                                    std::abs(samples[n] - 2.0F * samples[n - 2] + samples[n - 4])));
            return most;
        };
        const double steady =
            std::max(bend(change / 2, change), bend(samples.size() - kRate, samples.size()));
        // a jump bends a hundred times as much as the tone itself does, a corner ten times
        EXPECT_LT(bend(change - 8, samples.size()), 3.0 * steady) << test.name;
    }
}

TEST(Effects, OffTheyTouchNothingAlsoAfterwards) {
    const Samples before = noise(1.5, 3.0);
    Samples after = before;
    EffectChain chain(kRate);
    chain.set({});
    process(chain, after);
    EXPECT_TRUE(after == before);

    EffectSettings all = withBands({3, -3, 3, -3, 3, -3, 3, -3, 3, -3}, 6.0F);
    all.compressor = {true, -20.0F, 4.0F, 12.0F};
    all.isAutoVolume = true;
    all.stereoSeparation = 50.0F;
    chain.set(all);
    process(chain, after);
    chain.set({});
    Samples rest = noise(0.1, 6.0); // what was held back comes back over seconds
    process(chain, rest);
    after = before;
    process(chain, after);
    EXPECT_TRUE(after == before);
}

TEST(Effects, LoudnessIsThatOfTheStandard) {
    // the first two of EBU Tech 3341, then the gates
    EXPECT_NEAR(lufs(sine(1000.0, fromDecibel(-23.0), 20.0)), -23.0, 0.1);
    EXPECT_NEAR(lufs(sine(1000.0, fromDecibel(-33.0), 20.0)), -33.0, 0.1);
    EXPECT_EQ(lufs(sine(1000.0, fromDecibel(-75.0), 5.0)), LoudnessMeter::kUnknown);
    Samples mixed = sine(1000.0, fromDecibel(-36.0), 10.0);
    const Samples loud = sine(1000.0, fromDecibel(-23.0), 40.0);
    mixed.insert(mixed.end(), loud.begin(), loud.end());
    EXPECT_NEAR(lufs(mixed), -23.0, 0.1);
    // the weighting falls off at the bottom and rises at the top
    EXPECT_NEAR(lufs(sine(40.0, fromDecibel(-23.0), 10.0)), -29.3, 0.3);
    EXPECT_NEAR(lufs(sine(8000.0, fromDecibel(-23.0), 10.0)), -19.7, 0.5);
}

TEST(Effects, StationsOfDifferentLoudnessBecomeAlikeWithoutPumping) {
    EffectSettings automatic;
    automatic.isAutoVolume = true;
    for (const double amplitude : {0.8, 0.07}) {
        EffectChain chain(kRate);
        chain.set(automatic);
        Samples samples = noise(amplitude, 40.0);
        process(chain, samples);
        EXPECT_NEAR(lufs(samples, samples.size() / 2),
                    static_cast<double>(EffectSettings::kTargetLufs),
                    0.5)
            << amplitude;
        // two seconds at a time 9 dB quieter: a song's verse, which stays so
        const float settled = chain.autoGainDb();
        for (int n = 0; n < 10; ++n) {
            Samples part = noise(n % 2 == 0 ? amplitude * 0.35 : amplitude, 2.0);
            process(chain, part);
            EXPECT_NEAR(chain.autoGainDb(), settled, 1.5F) << amplitude << " part " << n;
        }
        Samples pause(2 * 10 * kRate, 0.0F);
        const float beforePause = chain.autoGainDb();
        process(chain, pause);
        EXPECT_NEAR(chain.autoGainDb(), beforePause, 1.0F); // silence is not made louder
    }
}

TEST(Effects, AutomaticVolumeBeginsWhereItStood) {
    EffectSettings automatic;
    automatic.isAutoVolume = true;
    automatic.autoVolumeStartDb = -10.0F;
    EffectChain chain(kRate);
    chain.set(automatic);
    Samples samples = sine(1000.0, 0.5, 0.1);
    process(chain, samples);
    EXPECT_NEAR(peak(samples), 0.5F * static_cast<float>(fromDecibel(-10.0)), 0.001F);
}

TEST(Effects, BoostMakesQuietLouderAndLoudNotTooLoud) {
    const struct {
        double inDb;
        double outDb; ///< of the peaks
    } cases[] = {{-50.0, -38.0}, {-30.0, -18.0}, {-12.0, -8.0}, {0.0, -4.0}};
    for (const auto& test : cases) {
        EffectChain chain(kRate);
        chain.set(boost(-24.0F, 3.0F, 12.0F));
        Samples samples = sine(1000.0, fromDecibel(test.inDb), 3.0);
        process(chain, samples);
        EXPECT_NEAR(levelDb(samples) + 3.01, test.outDb, 0.7) << test.inDb;
    }
}

TEST(Effects, NothingExceedsFullScale) {
    const EffectSettings loudest[] = {
        withBands({12, 12, 12, 12, 12, 12, 12, 12, 12, 12}, 12.0F),
        boost(-60.0F, 1.0F, 24.0F),
        boost(-20.0F, 20.0F, 24.0F),
    };
    for (const EffectSettings& settings : loudest)
        for (const double amplitude : {0.1, 1.0, 30.0}) {
            EffectChain chain(kRate);
            chain.set(settings);
            Samples samples = noise(amplitude, 1.0);
            for (const std::size_t at : {1000U, 20001U})
                samples[at] = 1000.0F;
            process(chain, samples);
            EXPECT_LE(peak(samples), 1.0F) << amplitude;
        }
}

TEST(Effects, BadSamplesAndNumbersDoNoLastingHarm) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    EffectSettings settings = withBands({kNaN, 99, -99, kInfinity, 0, 0, 0, 0, 0, 0}, kNaN);
    settings.compressor = {true, kNaN, 0.0F, kInfinity};
    settings.isAutoVolume = true;
    settings.autoVolumeStartDb = kNaN;
    settings.stereoSeparation = kNaN;
    EffectChain chain(kRate);
    chain.set(settings);
    Samples bad = noise(0.1, 1.0);
    bad[777] = kNaN;
    bad[20002] = kInfinity;
    bad[20003] = -kInfinity;
    process(chain, bad);
    EXPECT_LE(peak(bad), 1.0F);
    chain.set(boost(-20.0F, 2.0F, 6.0F));
    Samples rest = noise(0.01, 10.0);
    process(chain, rest);
    rest.erase(rest.begin(), rest.end() - kRate);
    EXPECT_NEAR(peak(rest), 0.02F, 0.002F);
}

TEST(Effects, AChannelHasThemFromItsFirstSampleAndItsEncodersGetThem) {
    EffectSettings swapped;
    swapped.isSwapped = true;
    Listener listener;
    AudioLibrary& library = listener.library();
    ASSERT_TRUE(library.ChannelSetEffects(0, swapped));
    const HSTREAM file = listener.openFile(trackPath(Track::Wav));
    Encoding encoding;
    const HENCODE encoder = library.Encode_FLAC_Start(file, "", 0, &Encoding::onBytes, &encoding);
    library.ChannelPlay(file, false);
    ASSERT_TRUE(listener.waitFor(BASS_SYNC_END));
    library.StreamFree(file);
    EXPECT_FALSE(library.ChannelSetEffects(file, {}));
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_HANDLE);

    const auto floats = [](const QByteArray& bytes) {
        Samples result(static_cast<std::size_t>(bytes.size()) / sizeof(float));
        std::memcpy(result.data(), bytes.constData(), result.size() * sizeof(float));
        return result;
    };
    Samples expected = floats(decodedByFfmpeg(trackPath(Track::Wav)));
    for (std::size_t n = 0; n + 1 < expected.size(); n += 2)
        std::swap(expected[n], expected[n + 1]);
    const Samples got = floats(decodedByFfmpeg(encoding.file(encoder, "flac")));
    ASSERT_GT(got.size(), expected.size() / 2);
    ASSERT_LE(got.size(), expected.size());
    EXPECT_TRUE(std::equal(got.rbegin(), got.rend(), expected.rbegin()));
}
