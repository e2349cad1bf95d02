#include "audio/bass/stub_session.h"

#include <array>
#include <functional>

namespace BASS {
namespace {

constexpr DWORD kStreamFlags = BASS_UNICODE | BASS_STREAM_STATUS | BASS_SAMPLE_FLOAT;

struct Call {
    std::function<bool(BassLibrary&)> carryOut; ///< whether the answer is as expected
    std::string expected;
};

std::string number(DWORD value) {
    return std::to_string(value);
}

// Each function with arguments that cannot be mistaken for each other.
const Call kCalls[] = {
    {[](BassLibrary& b) { return b.Init(-1, 44100, 6); }, "BASS_Init -1 44100 6"},
    {[](BassLibrary& b) { return b.SetDevice(3); }, "BASS_SetDevice 3"},
    {[](BassLibrary& b) { return b.GetDevice() == 1; }, "BASS_GetDevice"},
    {[](BassLibrary& b) { return b.SetConfig(11, 5000); }, "BASS_SetConfig 11 5000"},
    {[](BassLibrary& b) { return b.GetConfig(12) == 5; }, "BASS_GetConfig 12"},
    {[](BassLibrary& b) { return b.SetConfigPtr(BASS_CONFIG_NET_PROXY, nullptr); },
     "BASS_SetConfigPtr 17 null"},
    {[](BassLibrary& b) { return b.StreamFree(8); }, "BASS_StreamFree 8"},
    {[](BassLibrary& b) { return b.StreamGetFilePosition(8, 2) == 40000; },
     "BASS_StreamGetFilePosition 8 2"},
    {[](BassLibrary& b) { return b.ChannelPlay(8, true); }, "BASS_ChannelPlay 8 1"},
    {[](BassLibrary& b) { return b.ChannelPause(8); }, "BASS_ChannelPause 8"},
    {[](BassLibrary& b) { return b.ChannelStop(8); }, "BASS_ChannelStop 8"},
    {[](BassLibrary& b) { return b.ChannelIsActive(8) == 1; }, "BASS_ChannelIsActive 8"},
    {[](BassLibrary& b) { return b.ChannelFlags(8, 0, 0x40000) == 4; },
     "BASS_ChannelFlags 8 0 262144"},
    {[](BassLibrary& b) { return b.ChannelSetAttribute(8, 2, 0.5F); },
     "BASS_ChannelSetAttribute 8 2 0.500000"},
    {[](BassLibrary& b) {
         float value = 0;
         return b.ChannelGetAttribute(8, 2, &value) && value == 0.25F;
     },
     "BASS_ChannelGetAttribute 8 2"},
    {[](BassLibrary& b) { return b.ChannelSlideAttribute(8, 2, 0.5F, 900); },
     "BASS_ChannelSlideAttribute 8 2 0.500000 900"},
    {[](BassLibrary& b) { return b.ChannelIsSliding(8, 2); }, "BASS_ChannelIsSliding 8 2"},
    {[](BassLibrary& b) { return b.ChannelRemoveSync(8, 9); }, "BASS_ChannelRemoveSync 8 9"},
    {[](BassLibrary& b) { return b.ChannelGetPosition(8, 0) == 1000; },
     "BASS_ChannelGetPosition 8 0"},
    {[](BassLibrary& b) { return b.ChannelSetPosition(8, QWORD{1} << 33, 0); },
     "BASS_ChannelSetPosition 8 8589934592 0"},
    {[](BassLibrary& b) { return b.ChannelGetLength(8, 0) == QWORD{1} << 40; },
     "BASS_ChannelGetLength 8 0"},
    {[](BassLibrary& b) { return b.ChannelBytes2Seconds(8, 2500) == 2.5; },
     "BASS_ChannelBytes2Seconds 8 2500"},
    {[](BassLibrary& b) { return b.ChannelSeconds2Bytes(8, 2.5) == 2500; },
     "BASS_ChannelSeconds2Bytes 8 2.500000"},
    {[](BassLibrary& b) { return b.ChannelGetLevel(8) == 0x40002000; }, "BASS_ChannelGetLevel 8"},
    {[](BassLibrary& b) {
         std::array<float, AudioLibrary::kSpectrumBins> bins{};
         return b.ChannelGetSpectrum(8, bins.data()) > 0.0 && bins.back() == 0.25F;
     },
     "BASS_ChannelGetData 8 " + number(BASS_DATA_FFT2048)},
    {[](BassLibrary& b) { return b.Encode_SetPaused(8, true); }, "BASS_Encode_SetPaused 8 1"},
    {[](BassLibrary& b) { return b.WMA_EncodeGetRates(44100, 2, 8192)[1] == 128000; },
     "BASS_WMA_EncodeGetRates 44100 2 8192"},
    {[](BassLibrary& b) {
         return b.WMA_EncodeOpenFile(44100, 2, BASS_UNICODE, 64000, u"W\u00e4ve.wma") != 0;
     },
     "BASS_WMA_EncodeOpenFile 44100 2 " + number(BASS_UNICODE) + " 64000 UTF-16:W\u00e4ve.wma"},
    {[](BassLibrary& b) { return b.WMA_EncodeWrite(8, "abcd", 4); },
     "BASS_WMA_EncodeWrite 8 4 abcd"},
    {[](BassLibrary& b) { return b.WMA_EncodeClose(8); }, "BASS_WMA_EncodeClose 8"},
};

class BassCalls : public StubSession {};

TEST_F(BassCalls, ReachTheLibraryAsTheyAre) {
    for (const Call& row : kCalls) {
        forget();
        EXPECT_TRUE(row.carryOut(*library)) << row.expected;
        EXPECT_EQ(lastCall(), row.expected);
    }
}

TEST_F(BassCalls, FailuresKeepTheLibrarysReason) {
    const char* const functions[] = {"BASS_Init", "BASS_ChannelPlay", "BASS_StreamCreateURL"};
    int code = BASS_ERROR_DEVICE;
    for (const char* const function : functions)
        stub().failures[function] = code++;
    EXPECT_FALSE(library->Init(5, 44100, 0));
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_DEVICE);
    EXPECT_FALSE(library->ChannelPlay(1, false));
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_DEVICE + 1);
    EXPECT_EQ(library->StreamCreateURL(u"http://a", 0, BASS_UNICODE, nullptr, nullptr), 0U);
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_DEVICE + 2);
    EXPECT_TRUE(library->ChannelStop(1));
    EXPECT_EQ(library->ErrorGetCode(), BASS_OK);
}

struct Create {
    std::function<HSTREAM(BassLibrary&, const void*, DWORD)> call;
    std::string expected; ///< before and after the text
    std::string rest;
};

template <class Function>
auto url(Function function) {
    return [function](BassLibrary& b, const void* text, DWORD flags) {
        return (b.*function)(text, 7, flags, nullptr, nullptr);
    };
}

template <class Function>
auto file(Function function) {
    return [function](BassLibrary& b, const void* text, DWORD flags) {
        return (b.*function)(text, flags);
    };
}

// Every text arrives as UTF-16 with the Unicode flag, whatever it was given as.
TEST_F(BassCalls, StreamsAreMadeWithUnicodeTexts) {
    const std::string flags = number(kStreamFlags);
    const std::string wholeFile = " 0 0 0 " + flags;
    const Create table[] = {
        {url(&BassLibrary::StreamCreateURL), "BASS_StreamCreateURL", " 7 " + flags},
        {url(&BassLibrary::MP4_StreamCreateURL), "BASS_AAC_StreamCreateURL", " 7 " + flags},
        {url(&BassLibrary::FLAC_StreamCreateURL), "BASS_FLAC_StreamCreateURL", " 7 " + flags},
        {url(&BassLibrary::OPUS_StreamCreateURL), "BASS_OPUS_StreamCreateURL", " 7 " + flags},
        {url(&BassLibrary::HLS_StreamCreateURL), "BASS_HLS_StreamCreateURL", " " + flags},
        {url(&BassLibrary::WMA_StreamCreateURL),
         "BASS_WMA_StreamCreateFile",
         " 0 0 0 " + number(kStreamFlags & ~BASS_STREAM_STATUS)},
        {file(&BassLibrary::StreamCreateFile), "BASS_StreamCreateFile", wholeFile},
        {file(&BassLibrary::AAC_StreamCreateFile), "BASS_AAC_StreamCreateFile", wholeFile},
        {file(&BassLibrary::MP4_StreamCreateFile), "BASS_MP4_StreamCreateFile", wholeFile},
        {file(&BassLibrary::WMA_StreamCreateFile), "BASS_WMA_StreamCreateFile", wholeFile},
        {file(&BassLibrary::FLAC_StreamCreateFile), "BASS_FLAC_StreamCreateFile", wholeFile},
        {file(&BassLibrary::OPUS_StreamCreateFile), "BASS_OPUS_StreamCreateFile", wholeFile},
        {file(&BassLibrary::HLS_StreamCreateFile), "BASS_HLS_StreamCreateFile", wholeFile},
    };
    for (const Create& row : table) {
        forget();
        const HSTREAM wide = row.call(*library, u"http://h/\u00fc", kStreamFlags);
        EXPECT_NE(wide, 0U) << row.expected;
        EXPECT_EQ(countOf(row.expected + " UTF-16:http://h/\u00fc" + row.rest), 1) << lastCall();
        const HSTREAM narrow = row.call(*library, "http://h/a", kStreamFlags & ~BASS_UNICODE);
        EXPECT_NE(narrow, 0U) << row.expected;
        EXPECT_EQ(countOf(row.expected + " UTF-16:http://h/a" + row.rest), 1) << lastCall();
    }
}

TEST_F(BassCalls, Latin1TextsBecomeUtf16) {
    EXPECT_NE(library->StreamCreateURL("http://h/\xFC", 0, 0, nullptr, nullptr), 0U);
    EXPECT_EQ(countOf("BASS_StreamCreateURL UTF-16:http://h/\u00fc 0 " + number(BASS_UNICODE)), 1);
}

// The library may only keep the pointer.
TEST_F(BassCalls, OptionsTextsOutliveTheCall) {
    std::u16string agent = u"Agent \u00fc";
    ASSERT_TRUE(library->SetConfigPtr(BASS_CONFIG_NET_AGENT | BASS_UNICODE, agent.c_str()));
    agent.assign(100, u'x');
    const auto* const kept =
        static_cast<const char16_t*>(stub().pointers.at(BASS_CONFIG_NET_AGENT));
    EXPECT_EQ(std::u16string(kept), u"Agent \u00fc");
}

TEST_F(BassCalls, ChannelInfoTakesTheBitsAlone) {
    BASS_CHANNELINFO info{};
    ASSERT_TRUE(library->ChannelGetInfo(4, &info));
    EXPECT_EQ(info.freq, 44100U);
    EXPECT_EQ(info.chans, 2U);
    EXPECT_EQ(info.ctype, BASS_CTYPE_STREAM_MP3);
    EXPECT_EQ(info.origres, 24U); // above it lie flags
}

TEST_F(BassCalls, AddOnsAreLoadedFromTheFolder) {
    EXPECT_NE(library->PluginLoad("basswma.dll"), 0U);
    const QString path = stubFolder("all") + QLatin1Char('/') + bassFileName(BassFile::Wma);
    EXPECT_EQ(lastCall(), "BASS_PluginLoad UTF-16:" + path.toStdString());
    forget();
    EXPECT_NE(library->PluginLoad("bass_fx.dll"), 0U); // functions, not a format
    EXPECT_TRUE(calls().empty());
}

// --- callbacks

struct Heard {
    std::vector<std::string> events;
};

void onDownload(const void* buffer, DWORD length, void* user) {
    auto& events = static_cast<Heard*>(user)->events;
    const auto* const data = static_cast<const char*>(buffer);
    events.push_back(buffer == nullptr ? "end" : "bytes " + std::string(data, length));
}

void onTitle(const StreamTitle& title, void* user) {
    static_cast<Heard*>(user)->events.push_back("title " + std::to_string(title.position) + " " +
                                                std::string(title.data, title.length));
}

void onSync(HSYNC, DWORD channel, DWORD data, void* user) {
    static_cast<Heard*>(user)->events.push_back("sync " + number(channel) + " " + number(data));
}

class BassCallbacks : public StubSession {
  protected:
    HSTREAM create() {
        library->SetTitleProc(&onTitle);
        return library->StreamCreateURL(u"http://a", 0, kStreamFlags, &onDownload, &heard);
    }
    void download(const char* text) {
        stub().download(text, static_cast<DWORD>(std::string(text).size()), stub().downloadUser);
    }
    Heard heard;
};

TEST_F(BassCallbacks, BytesTitlesAndSyncsComeUntilTheStreamIsFreed) {
    stub().tags[BASS_TAG_META] = "StreamTitle='A';";
    const HSTREAM handle = create();
    ASSERT_NE(handle, 0U);
    ASSERT_NE(library->ChannelSetSync(handle, BASS_SYNC_STALL, 0, &onSync, &heard), 0U);
    const auto stall = syncOf(BASS_SYNC_STALL);
    const auto meta = syncOf(BASS_SYNC_META | BASS_SYNC_MIXTIME);
    download("abc");
    stub().tags[BASS_TAG_META] = "StreamTitle='B';";
    fire(meta);
    fire(stall, 1);
    stub().download(nullptr, 0, stub().downloadUser);
    const std::vector<std::string> expected{"title 0 StreamTitle='A';", // came before the syncs
                                            "bytes abc",
                                            "title 40000 StreamTitle='B';",
                                            "sync " + number(handle) + " 1",
                                            "end"};
    EXPECT_EQ(heard.events, expected);

    EXPECT_TRUE(library->StreamFree(handle));
    heard.events.clear();
    download("late");
    fire(meta);
    fire(stall);
    EXPECT_TRUE(heard.events.empty());
}

TEST_F(BassCallbacks, OggTitlesAreWholeLists) {
    using namespace std::string_literals;
    stub().tags[BASS_TAG_OGG] = "ARTIST=X\0TITLE=Y\0\0"s;
    ASSERT_NE(create(), 0U);
    ASSERT_EQ(heard.events.size(), 1U);
    EXPECT_EQ(heard.events[0], "title 0 ARTIST=X\0TITLE=Y"s);
}

TEST_F(BassCallbacks, RemovedAndOneTimeSyncsAreHeardNoMore) {
    const HSTREAM handle = create();
    const HSYNC end = library->ChannelSetSync(handle, BASS_SYNC_END, 0, &onSync, &heard);
    library->ChannelSetSync(handle, BASS_SYNC_SLIDE | BASS_SYNC_ONETIME, 0, &onSync, &heard);
    ASSERT_TRUE(library->ChannelRemoveSync(handle, end));
    fire(syncOf(BASS_SYNC_END));
    fire(syncOf(BASS_SYNC_SLIDE | BASS_SYNC_ONETIME), 2);
    fire(syncOf(BASS_SYNC_SLIDE | BASS_SYNC_ONETIME), 2);
    EXPECT_EQ(heard.events, std::vector<std::string>{"sync " + number(handle) + " 2"});
}

TEST_F(BassCallbacks, StreamsThatTheLibraryFreesAreForgotten) {
    const HSTREAM handle = create();
    fire(syncOf(BASS_SYNC_FREE | BASS_SYNC_MIXTIME));
    download("late");
    EXPECT_TRUE(heard.events.empty());
    EXPECT_FALSE(library->StreamCancel(&heard));
    EXPECT_NE(handle, 0U);
}

/// The library's sound runs through our own effects, and only where there are some.
TEST_F(BassCallbacks, EffectsAreOursInItsDspFunction) {
    const auto heardAs = [](std::vector<float> samples) {
        stub().dsp(77,
                   100,
                   samples.data(),
                   static_cast<bass_stub::Dword>(samples.size() * sizeof(float)),
                   stub().dspUser);
        return samples;
    };
    stub().dsp = nullptr;
    const std::vector<float> left{0.5F, 0.0F, 0.25F, 0.0F};
    const std::vector<float> right{0.0F, 0.5F, 0.0F, 0.25F};
    const HSTREAM plain = create();
    EXPECT_TRUE(library->ChannelSetEffects(plain, {}));
    EXPECT_EQ(stub().dsp, nullptr);
    EffectSettings swapped;
    swapped.isSwapped = true;
    EXPECT_TRUE(library->ChannelSetEffects(plain, swapped));
    ASSERT_NE(stub().dsp, nullptr);
    EXPECT_EQ(heardAs(left), right);
    float autoGain = 1.0F;
    EXPECT_TRUE(library->ChannelGetAttribute(plain, BASS_ATTRIB_AUTO_GAIN, &autoGain));
    EXPECT_EQ(autoGain, 0.0F);
    EXPECT_TRUE(library->StreamFree(plain));
    EXPECT_EQ(heardAs(left), left);
    EXPECT_FALSE(library->ChannelSetEffects(plain, swapped));
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_HANDLE);

    EXPECT_TRUE(library->ChannelSetEffects(0, swapped));
    ASSERT_NE(create(), 0U);
    EXPECT_EQ(heardAs(left), right);

    stub().failures["BASS_ChannelSetDSP"] = BASS_ERROR_NOTAVAIL;
    const HSTREAM refused = create();
    EXPECT_FALSE(library->ChannelSetEffects(refused, swapped));
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_NOTAVAIL);
}

} // namespace
} // namespace BASS
