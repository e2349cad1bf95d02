#include "audio/ffmpeg/byte_fifo.h"
#include "audio/ffmpeg/decode_worker.h"
#include "audio/frame_header.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <mutex>
#include <vector>

using namespace BASS;

namespace {

constexpr int kRate = 44100;

const std::uint8_t* bytesOf(const QByteArray& data) {
    return reinterpret_cast<const std::uint8_t*>(data.constData());
}

/// Frames of layer 3 that begin before a byte.
std::uint64_t framesBefore(const QByteArray& mp3, int position) {
    std::uint64_t frames = 0;
    int at = 0;
    while (at < position) {
        const auto frame =
            parseMpegFrame(bytesOf(mp3) + at, static_cast<std::size_t>(mp3.size() - at));
        if (!frame)
            break;
        at += static_cast<int>(frame->bytes);
        ++frames;
    }
    return frames;
}

/// A decode thread whose output is thrown away as fast as it comes.
class Decoding {
  public:
    explicit Decoding(std::size_t bound = 1 << 20) : fifo(bound) {
        DecodeWorker::Callbacks callbacks;
        callbacks.ready = [this](int error) { m_ready.set_value(error); };
        callbacks.title = [this](TagTimeline::Entry entry) {
            const std::lock_guard lock(m_mutex);
            m_titles.push_back(std::move(entry));
        };
        callbacks.accepts = [](StreamFormat) { return true; };
        callbacks.contentType = [] { return std::string(); };
        m_worker = std::make_unique<DecodeWorker>(fifo, voice, kRate, std::move(callbacks));
    }

    int start() {
        m_worker->start();
        return m_ready.get_future().get();
    }
    std::vector<TagTimeline::Entry> playToTheEnd() {
        std::vector<float> block(1024 * Voice::kChannels);
        voice.setMode(Voice::Mode::Playing);
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!voice.hasEnded() && std::chrono::steady_clock::now() < limit)
            voice.render(block.data(), 1024);
        m_worker->stop();
        EXPECT_TRUE(voice.hasEnded());
        return m_titles;
    }
    void title(int position, const char* text) {
        fifo.mark(
            {StreamMark::Kind::Title, static_cast<std::uint64_t>(position), BASS_TAG_META, text});
    }

    ByteFifo fifo;
    Semaphore signal;
    Voice voice{kRate, signal};

  private:
    std::mutex m_mutex; ///< guards m_titles
    std::vector<TagTimeline::Entry> m_titles;
    std::promise<int> m_ready;
    std::unique_ptr<DecodeWorker> m_worker;
};

} // namespace

TEST(DecodeWorker, PutsEachTitleAtTheFrameItsByteBelongsTo) {
    const QByteArray& mp3 = track(Track::Mp3Joint); // no tag and no Info frame: frames from byte 0
    Decoding decoding;
    const int positions[] = {400, 5000, 5001, 12345};
    for (const int position : positions)
        decoding.title(position, "title");
    decoding.fifo.push(bytesOf(mp3), static_cast<std::size_t>(mp3.size()));
    decoding.fifo.end(BASS_OK);
    ASSERT_EQ(decoding.start(), BASS_OK);
    const auto titles = decoding.playToTheEnd();
    ASSERT_EQ(titles.size(), 4U);
    EXPECT_EQ(titles[0].frame, 0U); // the first tells what plays already
    for (std::size_t n = 1; n < 4; ++n)
        EXPECT_EQ(titles[n].frame, framesBefore(mp3, positions[n]) * 1152) << positions[n];
}

TEST(DecodeWorker, FindsTheNextFrameBehindAGap) {
    QByteArray adts;
    for (int n = 0; n < 8; ++n)
        adts += track(Track::Adts);
    constexpr std::size_t kBound = 64 * 1024;
    const auto size = static_cast<std::size_t>(adts.size());
    ASSERT_GT(size, 2 * kBound);
    Decoding decoding(kBound);
    decoding.fifo.push(bytesOf(adts), kBound / 2); // the decoder fills its ring and waits
    ASSERT_EQ(decoding.start(), BASS_OK);
    for (std::size_t at = kBound / 2; at < size; at += 1000) // meanwhile the rest overtakes it
        decoding.fifo.push(bytesOf(adts) + at, std::min<std::size_t>(1000, size - at));
    decoding.fifo.end(BASS_OK);
    decoding.playToTheEnd();
    const double bytesPerSecond = static_cast<double>(track(Track::Adts).size()) / kTrackSeconds;
    EXPECT_GT(static_cast<double>(decoding.voice.heardFrame()) / kRate,
              0.75 * kBound / bytesPerSecond);
}
