#include "audio/ffmpeg/byte_fifo.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

using namespace BASS;
using Status = DecoderInput::Status;

namespace {

void push(ByteFifo& fifo, const std::string& text) {
    fifo.push(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

void mark(ByteFifo& fifo, StreamMark::Kind kind, std::uint64_t position, const char* text = "") {
    fifo.mark({kind, position, BASS_TAG_OGG, text});
}

/// Everything up to the end as one line: bytes, | for a link's begin, ! for a gap.
std::string drain(ByteFifo& fifo, std::size_t step) {
    std::string result;
    std::string buffer(step, '\0');
    for (;;) {
        const auto got = fifo.read(reinterpret_cast<std::uint8_t*>(buffer.data()), step);
        if (got.status == Status::Bytes)
            result.append(buffer, 0, got.size);
        else if (got.status == Status::LinkEnd)
            result += '|';
        else if (got.status == Status::Gap)
            result += '!';
        else
            return result;
    }
}

} // namespace

TEST(ByteFifo, CutsReadsAtLinks) {
    for (std::size_t step = 1; step < 12; ++step) {
        SCOPED_TRACE(step);
        ByteFifo fifo(100);
        mark(fifo, StreamMark::Kind::LinkStart, 0);
        push(fifo, "abc");
        mark(fifo, StreamMark::Kind::LinkStart, 3);
        mark(fifo, StreamMark::Kind::Title, 4, "two");
        push(fifo, "defg");
        mark(fifo, StreamMark::Kind::LinkStart, 7);
        push(fifo, "h");
        fifo.end(BASS_OK);
        EXPECT_EQ(drain(fifo, step), "|abc|defg|h");
        StreamMark title;
        EXPECT_FALSE(fifo.takeTitle(3, title));
        EXPECT_TRUE(fifo.takeTitle(4, title));
        EXPECT_EQ(title.data, "two");
    }
}

TEST(ByteFifo, DropsTheOldestWhenItIsFull) {
    ByteFifo fifo(16);
    push(fifo, "0123456789abcdef");
    push(fifo, "ghij");
    fifo.end(BASS_OK);
    EXPECT_EQ(fifo.received(), 20U);
    EXPECT_EQ(drain(fifo, 5), "!456789abcdefghij");
}

TEST(ByteFifo, GivesTheHeadersOfALinkWhoseStartWasDropped) {
    ByteFifo fifo(16);
    mark(fifo, StreamMark::Kind::LinkStart, 0);
    push(fifo, "01234567");
    mark(fifo, StreamMark::Kind::LinkStart, 8);
    push(fifo, "HEAD");
    fifo.setLinkHeaders({'H', 'E', 'A', 'D'});
    push(fifo, "cdef");
    push(fifo, "ghijklmnop"); // bytes 0 to 9 go, and the link's start with them
    fifo.end(BASS_OK);
    bool isEnd = false;
    const auto front = fifo.peek(6, 0, isEnd);
    EXPECT_EQ(std::string(front.begin(), front.end()), "HEADAD");
    EXPECT_EQ(drain(fifo, 7), "|HEADADcdefghijklmnop");
}

/// A slow moment makes the ring big, and the time behind it small again.
TEST(ByteFifo, GivesEveryByteOnceWhileItsMemoryChanges) {
    constexpr std::size_t kBlock = 50000;
    ByteFifo fifo(32 * 1024 * 1024);
    std::uint8_t next = 0;
    std::uint8_t expected = 0;
    std::vector<std::uint8_t> block(kBlock);
    std::size_t wrong = 0;
    for (const std::size_t backlog : {100U, 1U, 3U, 60U, 0U}) {
        std::size_t held = 0;
        for (; held < backlog; ++held) {
            for (std::uint8_t& byte : block)
                byte = next++;
            fifo.push(block.data(), block.size());
        }
        for (std::size_t left = held * kBlock; left > 0;) {
            const ByteFifo::Read read = fifo.read(block.data(), std::min<std::size_t>(left, 7001));
            ASSERT_EQ(read.status, ByteFifo::Status::Bytes);
            for (std::size_t n = 0; n < read.size; ++n)
                wrong += block[n] != expected++ ? 1 : 0;
            left -= read.size;
        }
    }
    EXPECT_EQ(wrong, 0U);
}

TEST(ByteFifo, SkipsToTheNewestAndTellsOfTheGap) {
    ByteFifo fifo(1 << 22, 8);
    push(fifo, std::string(1 << 21, 'x')); // far more than a transfer would wait for
    push(fifo, "0123456789");
    fifo.skipToNewest(4);
    fifo.skipToNewest(100); // there is no more
    push(fifo, "ab");
    fifo.end(BASS_OK);
    EXPECT_EQ(fifo.received(), (1U << 21) + 12U);
    EXPECT_EQ(drain(fifo, 5), "!6789ab");
}

TEST(ByteFifo, TellsOnceWhenThereIsRoomAgain) {
    ByteFifo fifo(16);
    int drained = 0;
    fifo.setDrained([&drained] { ++drained; });
    push(fifo, std::string(12, 'x'));
    EXPECT_FALSE(fifo.mustWait(4));
    EXPECT_TRUE(fifo.mustWait(5));
    fifo.end(BASS_ERROR_TIMEOUT);
    EXPECT_EQ(drain(fifo, 3), std::string(12, 'x'));
    EXPECT_EQ(drained, 1);
    EXPECT_EQ(fifo.error(), BASS_ERROR_TIMEOUT);
}

TEST(ByteFifo, AbortWakesAReader) {
    ByteFifo fifo(16);
    std::thread reader([&fifo] {
        std::uint8_t byte = 0;
        EXPECT_EQ(fifo.read(&byte, 1).status, Status::Aborted);
    });
    fifo.abort();
    reader.join();
}
