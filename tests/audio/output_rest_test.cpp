#include "audio/disk_output.h"
#include "audio/ffmpeg/mixer.h"
#include "audio/ffmpeg/output_control.h"

#include <QTest>

#include <vector>

using namespace BASS;

namespace {

constexpr std::uint32_t kRate = 44100;

/// The device asks for sound. Its file begins anew when it is opened.
bool isHeard(const DiskOutput& output) {
    const qint64 before = output.size();
    return QTest::qWaitFor([&] { return output.size() != before; }, 300);
}

} // namespace

TEST(OutputRest, ADeviceIsOpenOnlyWhileThereIsSomethingToHear) {
    const DiskOutput output;
    Mixer mixer;
    OutputControl control(
        mixer, [] {}, std::chrono::seconds(1));
    ASSERT_TRUE(control.open(OutputControl::kDefault, kRate));
    EXPECT_FALSE(isHeard(output)) << "nothing has been played";

    Semaphore events;
    Voice voice(kRate, events);
    ASSERT_TRUE(mixer.add(voice));
    voice.setMode(Voice::Mode::Playing);
    control.wake();
    EXPECT_TRUE(isHeard(output));

    // more than what is waited for after a stall
    const std::vector<float> tone(std::size_t{kRate * 6 / 10} * Voice::kChannels, 0.5F);
    voice.write(tone.data(), tone.size() / Voice::kChannels);
    voice.setVolume(0.0F);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isHeard(output); }, 10000));
    voice.setVolume(1.0F);
    control.unmute();
    EXPECT_TRUE(isHeard(output));

    mixer.remove(voice);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isHeard(output); }, 10000));
}
