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

TEST_F(CBassTest, SelectsAnOutputDeviceByTheRules) {
    constexpr DWORD kCurrent = ~DWORD{0};
    const struct {
        const char* name;
        bool isSet;    ///< by the first call
        int initError; ///< BASS_OK: it works
        bool isSetAtLast;
        bool result;
        bool hasMessage;
    } cases[] = {
        {"known already", true, BASS_OK, true, true, false},
        {"to be opened", false, BASS_OK, true, true, false},
        {"open already", false, BASS_ERROR_ALREADY, true, true, false},
        {"refused, the old one stays", false, BASS_ERROR_DRIVER, true, true, true},
        {"refused, and none is left", false, BASS_ERROR_DRIVER, false, false, true},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        library->initDevices.clear();
        library->onSetDevice = [&test](DWORD device) {
            return device == kCurrent ? test.isSetAtLast : test.isSet;
        };
        library->onInit = [this, &test](int) {
            library->error = test.initError;
            return test.initError == BASS_OK;
        };
        TestEngine fresh(library);
        EXPECT_EQ(fresh.SelectDevice(2), test.result);
        EXPECT_EQ(library->initDevices, test.isSet ? std::vector<int>{} : std::vector<int>{2});
        EXPECT_EQ(fresh.lastError().startsWith(
                      QStringLiteral("Failed to initialize sound libraries\n\n")),
                  test.hasMessage);
    }
}

TEST_F(CBassTest, MovesToADeviceByNameAndBackToTheFollowedOne) {
    library->devices = {{"No sound", "", 0},
                        {"Default", "", BASS_DEVICE_ENABLED | BASS_DEVICE_DEFAULT},
                        {"Speakers", "", BASS_DEVICE_ENABLED | BASS_DEVICE_DEFAULT},
                        {"Gone", "", 0},
                        {"Headset", "", BASS_DEVICE_ENABLED}};
    EXPECT_EQ(engine.outputDevices(),
              (QStringList{QStringLiteral("Speakers"), QStringLiteral("Headset")}));
    EXPECT_TRUE(engine.SelectDevice(QStringLiteral("Headset"))); // kept for the first start
    EXPECT_TRUE(library->initDevices.empty());
    ASSERT_TRUE(engine.InitLibrary());
    library->onSetDevice = [](DWORD device) { return device == ~DWORD{0}; };
    EXPECT_TRUE(engine.SelectDevice(QString()));
    EXPECT_TRUE(engine.SelectDevice(QStringLiteral("Speakers")));
    EXPECT_EQ(library->initDevices, (std::vector<int>{4, 1, 2}));
}

TEST_F(CBassTest, SoundOptionsReachWhatPlaysAndWhatComes) {
    SoundOptions options;
    options.equalizer = {true, -3.0F, bandsFromText(QStringLiteral("Rock"))};
    options.isMono = true;
    options.stereoSeparation = 40;
    engine.setSoundOptions(options);
    ASSERT_EQ(library->effects.size(), 1U); // nothing plays yet
    EXPECT_EQ(library->effects[0].first, 0U);
    const EffectSettings& effects = library->effects[0].second;
    EXPECT_EQ(effects.equalizer.bandsDb[0], 5.0F);
    EXPECT_EQ(effects.equalizer.preampDb, -3.0F);
    EXPECT_TRUE(effects.isMono);
    EXPECT_EQ(effects.stereoSeparation, 40.0F);
    EXPECT_FALSE(effects.compressor.isOn);

    engine.setHandle(7);
    library->effects.clear();
    float lastMakeUp = 0.0F;
    for (const DynamicBoost boost : {DynamicBoost::Low, DynamicBoost::Medium, DynamicBoost::High}) {
        options.boost = boost;
        engine.setSoundOptions(options);
        EXPECT_EQ(library->effects.back().first, 7U);
        EXPECT_GT(library->effects.back().second.compressor.makeUpDb, lastMakeUp);
        lastMakeUp = library->effects.back().second.compressor.makeUpDb;
    }
    options.boost = DynamicBoost::Custom;
    options.customBoost = {false, -30.0F, 8.0F, 11.0F};
    engine.setSoundOptions(options);
    EXPECT_TRUE(library->effects.back().second.compressor.isOn);
    EXPECT_EQ(library->effects.back().second.compressor.ratio, 8.0F);
    library->effects.clear();
    engine.ChannelPlay(0);
    EXPECT_EQ(library->effects.back().first, 7U);
}
