#include "audio/bass/stub_session.h"

#include <chrono>
#include <condition_variable>
#include <map>

namespace BASS {
namespace {

constexpr DWORD kChannel = 60;
constexpr DWORD kQueue = BASS_ENCODE_QUEUE;

/// What came of each encoder, in order; "|" is the last call, "[4]xy" a rewrite at 4.
class Files {
  public:
    static void
    onBytes(HENCODE handle, DWORD /*channel*/, const void* data, DWORD length, void* user) {
        const std::string text(static_cast<const char*>(data), length);
        static_cast<Files*>(user)->add(handle, length == 0 ? "|" : text);
    }
    static void onRewrite(HENCODE handle,
                          DWORD /*channel*/,
                          const void* data,
                          DWORD length,
                          QWORD offset,
                          void* user) {
        const std::string text(static_cast<const char*>(data), length);
        static_cast<Files*>(user)->add(handle, "[" + std::to_string(offset) + "]" + text);
    }
    std::string of(HENCODE handle) {
        const std::lock_guard lock(m_mutex);
        return m_files[handle];
    }
    bool waitFor(HENCODE handle, const std::string& expected) {
        std::unique_lock lock(m_mutex);
        return m_came.wait_for(
            lock, std::chrono::seconds(10), [&] { return m_files[handle] == expected; });
    }

  private:
    void add(HENCODE handle, const std::string& text) {
        const std::lock_guard lock(m_mutex);
        m_files[handle] += text;
        m_came.notify_all();
    }
    std::mutex m_mutex;
    std::condition_variable m_came;
    std::map<HENCODE, std::string> m_files;
};

class BassEncoding : public StubSession {
  protected:
    static bass_stub::Encoder encoder(HENCODE handle) {
        const std::lock_guard lock(stub().mutex);
        for (const auto& candidate : stub().encoders) {
            if (candidate.handle == handle)
                return candidate;
        }
        return {};
    }
    static void give(HENCODE handle, const std::string& text) {
        const auto to = encoder(handle);
        to.proc(handle, kChannel, text.data(), static_cast<DWORD>(text.size()), to.user);
    }
    static void giveAt(HENCODE handle, const std::string& text, QWORD offset) {
        const auto to = encoder(handle);
        to.procEx(handle, kChannel, text.data(), static_cast<DWORD>(text.size()), offset, to.user);
    }
    HENCODE ogg() {
        return library->Encode_OGG_Start(kChannel, u"-q5", BASS_UNICODE, &Files::onBytes, &files);
    }
    Files files;
};

TEST_F(BassEncoding, EachKindStartsWithItsOptionsAndAQueue) {
    const std::string flags = std::to_string(BASS_UNICODE | kQueue);
    const auto proc = &Files::onBytes;
    EXPECT_NE(library->Encode_MP3_Start(kChannel, "--abr 160", 0, proc, &files), 0U);
    EXPECT_EQ(lastCall(), "BASS_Encode_MP3_Start 60 UTF-16:--abr 160 " + flags);
    EXPECT_NE(library->Encode_FLAC_Start(kChannel, nullptr, 0, proc, &files), 0U);
    EXPECT_EQ(lastCall(), "BASS_Encode_FLAC_Start 60 UTF-16: " + flags);
    EXPECT_NE(library->Encode_OGG_Start(kChannel, u"-q5", BASS_UNICODE, proc, &files), 0U);
    EXPECT_EQ(lastCall(), "BASS_Encode_OGG_Start 60 UTF-16:-q5 " + flags);
    EXPECT_NE(library->Encode_Start(kChannel, u"C:\\l\u00e4me -", BASS_UNICODE, proc, &files), 0U);
    EXPECT_EQ(lastCall(), "BASS_Encode_Start 60 UTF-16:C:\\l\u00e4me - " + flags);
    for (const auto start : {&BassLibrary::Encode_AAC_Start, &BassLibrary::Encode_WMA_Start}) {
        EXPECT_EQ((library.get()->*start)(kChannel, u"", BASS_UNICODE, proc, &files), 0U);
        EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_NOTAVAIL);
    }
}

TEST_F(BassEncoding, StopHandsOutTheRestAndOneLastCall) {
    stub().queued = "rest";
    const HENCODE handle = ogg();
    give(handle, "first ");
    EXPECT_TRUE(library->Encode_StopEx(handle, true));
    EXPECT_TRUE(files.waitFor(handle, "first rest|"));
    EXPECT_FALSE(library->Encode_StopEx(handle, true));
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_HANDLE);
    EXPECT_EQ(countOf("BASS_Encode_StopEx " + std::to_string(handle) + " 1"), 1);
    give(handle, "late");
    EXPECT_EQ(files.of(handle), "first rest|");
}

TEST_F(BassEncoding, BytesForAnotherPlaceAreRewrites) {
    library->SetEncodeRewriteProc(&Files::onRewrite);
    const HENCODE handle = library->Encode_MP3_Start(kChannel, "-b128", 0, &Files::onBytes, &files);
    giveAt(handle, "head", 0);
    giveAt(handle, "body", 4);
    giveAt(handle, "HEAD", 0);
    library->Encode_StopEx(kChannel, true); // a channel: all of its encoders
    EXPECT_TRUE(files.waitFor(handle, "headbody[0]HEAD|"));
}

TEST_F(BassEncoding, DeadEncodersAreToldOfAndInactive) {
    const HENCODE handle = ogg();
    EXPECT_EQ(library->Encode_IsActive(handle), BASS_ACTIVE_PLAYING);
    const auto dying = encoder(handle);
    dying.notify(handle, BASS_ENCODE_NOTIFY_ENCODER, dying.notifyUser);
    EXPECT_EQ(library->Encode_IsActive(handle), BASS_ACTIVE_STOPPED);
    EXPECT_TRUE(files.waitFor(handle, "|"));
}

TEST_F(BassEncoding, CutGoesOverInsideTheTitlesCall) {
    const HENCODE old = ogg();
    const HENCODE next = library->Encode_CutAt(old, 40000, 0, &Files::onBytes, &files);
    ASSERT_NE(next, 0U);
    const auto begin = "BASS_Encode_OGG_Start 60 UTF-16:-q5 ";
    EXPECT_EQ(countOf(begin + std::to_string(BASS_UNICODE | kQueue | BASS_ENCODE_PAUSE)), 1);
    // between the two of them nothing is decoded
    const auto all = calls();
    const std::vector<std::string> swap{"BASS_ChannelLock 60 1",
                                        "BASS_Encode_SetPaused " + std::to_string(old) + " 1",
                                        "BASS_Encode_SetPaused " + std::to_string(next) + " 0",
                                        "BASS_ChannelLock 60 0"};
    EXPECT_NE(std::search(all.begin(), all.end(), swap.begin(), swap.end()), all.end());
    EXPECT_TRUE(files.waitFor(old, "|"));
    EXPECT_EQ(files.of(next), "");
}

TEST_F(BassEncoding, DelayedCutWaitsForItsPlace) {
    const HENCODE old = ogg();
    const HENCODE next = library->Encode_CutAt(old, 0, 1500, &Files::onBytes, &files);
    ASSERT_NE(next, 0U);
    EXPECT_EQ(library->Encode_CutAt(old, 0, 1500, &Files::onBytes, &files), 0U);
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_ALREADY);
    const auto cut = syncOf(BASS_SYNC_POS | BASS_SYNC_MIXTIME | BASS_SYNC_ONETIME);
    EXPECT_EQ(cut.param, 2500U); // 1000 decoded, 1000 bytes a second
    EXPECT_EQ(files.of(old), "");
    fire(cut);
    EXPECT_TRUE(files.waitFor(old, "|"));
    EXPECT_EQ(library->Encode_CutAt(old, 0, 0, &Files::onBytes, &files), 0U);
    EXPECT_EQ(library->ErrorGetCode(), BASS_ERROR_HANDLE);
}

TEST_F(BassEncoding, StopBeforeTheCutStopsBoth) {
    const HENCODE old = ogg();
    const HENCODE next = library->Encode_CutAt(old, 0, 1500, &Files::onBytes, &files);
    EXPECT_TRUE(library->Encode_StopEx(next, true));
    EXPECT_TRUE(files.waitFor(old, "|"));
    EXPECT_TRUE(files.waitFor(next, "|"));
}

TEST_F(BassEncoding, FreeingTheStreamWaitsForItsFiles) {
    stub().queued = "rest";
    const HSTREAM stream = library->StreamCreateURL(u"http://a", 0, BASS_UNICODE, nullptr, nullptr);
    const HENCODE handle =
        library->Encode_OGG_Start(stream, u"", BASS_UNICODE, &Files::onBytes, &files);
    EXPECT_TRUE(library->StreamFree(stream));
    EXPECT_EQ(files.of(handle), "rest|");
    EXPECT_EQ(lastCall(), "BASS_StreamFree " + std::to_string(stream));
}

TEST_F(BassEncoding, EncodersGoOnWithAnotherChannel) {
    const HENCODE handle = ogg();
    EXPECT_TRUE(library->Encode_SetChannel(handle, 61));
    EXPECT_EQ(lastCall(), "BASS_Encode_SetChannel " + std::to_string(handle) + " 61");
    EXPECT_FALSE(library->Encode_StopEx(kChannel, true)); // none is left on the old one
    EXPECT_TRUE(library->Encode_StopEx(61, true));
    EXPECT_TRUE(files.waitFor(handle, "|"));
}

} // namespace
} // namespace BASS
