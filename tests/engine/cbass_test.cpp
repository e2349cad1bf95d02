#include "engine/cbass.h"
#include "support/fake_library.h"

#include <gtest/gtest.h>

using namespace BASS;

namespace {

/// The engine's ground with a channel that the test gives it.
class TestEngine final : public CBass {
  public:
    explicit TestEngine(std::shared_ptr<AudioLibrary> library) : CBass(std::move(library)) {}
    using CBass::setHandle;
    std::vector<int> notices;

  protected:
    void Notify(int code, const QVariant&) override { notices.push_back(code); }
    void readTags(DWORD) override {}
    bool isTrackChange(const Song&, const Song&) override { return false; }
};

class CBassTest : public ::testing::Test {
  protected:
    void SetUp() override {
        g_Volume = -1;
        g_VolMuted = false;
    }
    std::shared_ptr<FakeLibrary> library = std::make_shared<FakeLibrary>();
    TestEngine engine{library};
};

} // namespace

TEST_F(CBassTest, RoundsTheVolumeUpToWholeSteps) {
    int calls = 0;
    library->storeVolume = [&calls](DWORD value) { return calls++ == 0 ? value - 1 : value; };
    engine.SetVolume(37);
    EXPECT_EQ(library->config[BASS_CONFIG_GVOL_STREAM], 3700U);
    EXPECT_EQ(g_Volume, 37);
}

TEST_F(CBassTest, MutingTwiceKeepsTheFirstVolume) {
    engine.SetVolume(55);
    engine.SetVolumeMute(true);
    engine.SetVolumeMute(true);
    EXPECT_EQ(library->config[BASS_CONFIG_GVOL_STREAM], 0U);
    EXPECT_TRUE(g_VolMuted);
    engine.SetVolumeMute(false);
    EXPECT_EQ(library->config[BASS_CONFIG_GVOL_STREAM], 5500U);
    EXPECT_FALSE(g_VolMuted);
}

TEST_F(CBassTest, FadesInFromSilence) {
    engine.setHandle(7);
    library->attributes[BASS_ATTRIB_VOL] = 0.8F;
    ASSERT_TRUE(engine.ChannelPlay(2000));
    EXPECT_EQ(library->attributes[BASS_ATTRIB_VOL], 0.0F);
    ASSERT_EQ(library->slides.size(), 1U);
    EXPECT_EQ(library->slides[0].value, 0.8F);
    EXPECT_EQ(library->slides[0].time, 2000U);
}

TEST_F(CBassTest, StartsAtFullVolumeWithoutFade) {
    engine.setHandle(7);
    ASSERT_TRUE(engine.ChannelPlay(0));
    EXPECT_EQ(library->attributes[BASS_ATTRIB_VOL], 1.0F);
    EXPECT_TRUE(library->slides.empty());
    engine.setHandle(0);
    EXPECT_FALSE(engine.ChannelPlay(0));
}

TEST_F(CBassTest, MutesTheChannelAndBringsItsVolumeBack) {
    engine.setHandle(7);
    library->attributes[BASS_ATTRIB_VOL] = 0.6F;
    engine.ChannelMute(true, 100);
    engine.ChannelMute(false, 100);
    ASSERT_EQ(library->slides.size(), 2U);
    EXPECT_EQ(library->slides[0].value, 0.0F);
    EXPECT_EQ(library->slides[1].value, 0.6F);
}

TEST_F(CBassTest, PassesOverADeviceCalledDefault) {
    library->devices = {{"No sound", "", BASS_DEVICE_ENABLED},
                        {"Speakers", "", BASS_DEVICE_ENABLED | BASS_DEVICE_DEFAULT},
                        {"Default", "", BASS_DEVICE_ENABLED | BASS_DEVICE_DEFAULT}};
    EXPECT_EQ(engine.GetDefaultSoundDeviceIndex(), 1);
    library->devices.resize(1);
    EXPECT_EQ(engine.GetDefaultSoundDeviceIndex(), -1);
}

TEST_F(CBassTest, FallsBackToTheSystemsDeviceAndSaysWhatIsWrong) {
    EngineSettings settings;
    settings.outputDevice = 5;
    engine.setSettings(settings);
    library->error = BASS_ERROR_DEVICE;
    library->onInit = [](int device) { return device == -1; };
    EXPECT_TRUE(engine.InitLibrary());
    EXPECT_EQ(library->initDevices, (std::vector<int>{5, -1}));
    engine.FreeLibrary();
    library->onInit = [](int) { return false; };
    EXPECT_FALSE(engine.InitLibrary());
    EXPECT_TRUE(engine.lastError().startsWith(QLatin1String("Illegal device number\n\n")));
}

TEST_F(CBassTest, HandsTheNetworkSettingsOver) {
    EngineSettings settings;
    settings.userAgent = QStringLiteral("Agent/1");
    settings.proxy = QStringLiteral("u:p@h:1");
    settings.bufferMs = 7000;
    engine.setSettings(settings);
    ASSERT_TRUE(engine.InitLibrary());
    EXPECT_EQ(library->texts[BASS_CONFIG_NET_AGENT], settings.userAgent);
    EXPECT_EQ(library->texts[BASS_CONFIG_NET_PROXY], settings.proxy);
    EXPECT_EQ(library->config[BASS_CONFIG_NET_BUFFER], 7000U);
    EXPECT_EQ(library->config[BASS_CONFIG_NET_TIMEOUT], 5000U);
    EXPECT_EQ(library->config[BASS_CONFIG_NET_PREBUF], 0U);
}
