#pragma once

#include "audio/ffmpeg/decoder_input.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace BASS {

/// The bytes between the network and a decoder, with their marks. Bounded: what plays live loses
/// its oldest bytes when the decoder does not keep up, a file's transfer is told to wait.
///
/// *Thread*: one writing, one reading; abort() from any.
class ByteFifo final : public DecoderInput {
  public:
    /// bound: bytes held at most; waitAt: a transfer that can wait does so from here on.
    explicit ByteFifo(std::size_t bound, std::size_t waitAt = ~std::size_t{0});

    // --- writing thread -------------------------------------------------------------------------
    void push(const std::uint8_t* data, std::size_t size);
    void mark(StreamMark mark);
    /// The headers of the link that began last, for a reader who finds its start dropped.
    void setLinkHeaders(const std::vector<std::uint8_t>& pages);
    void end(int error);
    /// True: take no more now; onDrained is called once when there is room again.
    bool mustWait(std::size_t size);
    /// Set before the first byte; called on the reading thread.
    void setDrained(std::function<void()> onDrained) { m_onDrained = std::move(onDrained); }

    // --- reading thread -------------------------------------------------------------------------
    Read read(std::uint8_t* out, std::size_t max) override;
    std::vector<std::uint8_t> peek(std::size_t max, std::size_t known, bool& isEnd) override;
    bool takeTitle(std::uint64_t position, StreamMark& title) override;
    void setPace(std::size_t bytesPerSecond) override { m_pace.store(bytesPerSecond); }

    // --- any thread -----------------------------------------------------------------------------
    void abort() override;
    [[nodiscard]] std::size_t size() const;
    /// Bytes that the reader takes a second; 0: not known.
    [[nodiscard]] std::size_t pace() const { return m_pace.load(); }
    [[nodiscard]] std::size_t waitAt() const { return m_waitAt; }
    /// Drops all but the newest bytes, as when there was no room for more.
    void skipToNewest(std::size_t kept);
    [[nodiscard]] std::uint64_t received() const override;
    [[nodiscard]] std::uint64_t taken() const override;
    [[nodiscard]] bool isEnded() const;
    [[nodiscard]] int error() const override;

  private:
    void grow(std::size_t wanted);
    void resizeRing(std::size_t size);
    void dropOldest(std::size_t count);
    void copyOut(std::uint8_t* out, std::size_t count) const;
    std::uint64_t nextLink() const;

    const std::size_t m_bound;
    const std::size_t m_waitAt;
    std::function<void()> m_onDrained;
    std::atomic<std::size_t> m_pace{0};

    mutable std::mutex m_mutex; ///< guards all below
    std::condition_variable m_arrived;
    std::vector<std::uint8_t> m_ring;
    std::size_t m_head = 0;
    std::size_t m_size = 0;
    std::uint64_t m_position = 0; ///< of the byte at m_head
    std::deque<StreamMark> m_titles;
    std::deque<std::uint64_t> m_links;   ///< starts not yet passed
    std::vector<std::uint8_t> m_headers; ///< of the link at or before m_lastLink
    std::vector<std::uint8_t> m_prefix;  ///< served before the ring
    bool m_isAtLink = false;             ///< LinkEnd has been told for the link in front
    bool m_hasGap = false;
    bool m_isEnded = false;
    bool m_isAborted = false;
    bool m_isWaiting = false;
    int m_error = 0;
};

} // namespace BASS
