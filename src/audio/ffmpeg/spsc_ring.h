#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace BASS {

/// A queue between one writing and one reading thread: no lock, no allocation after construction.
/// Positions count elements since construction and never wrap.
template <typename T>
class SpscRing {
  public:
    /// capacity: a power of two.
    explicit SpscRing(std::size_t capacity) : m_data(capacity), m_mask(capacity - 1) {}

    [[nodiscard]] std::size_t capacity() const { return m_data.size(); }
    [[nodiscard]] std::uint64_t written() const { return m_written.load(); }
    [[nodiscard]] std::uint64_t consumed() const { return m_consumed.load(); }
    [[nodiscard]] std::size_t readable() const {
        const std::uint64_t consumedCount = m_consumed.load();
        return static_cast<std::size_t>(m_written.load() - consumedCount);
    }

    /// Writing thread. Takes what fits, returns how many.
    std::size_t write(const T* data, std::size_t count) {
        const std::uint64_t at = m_written.load(std::memory_order_relaxed);
        count = std::min(count, m_data.size() - static_cast<std::size_t>(at - m_consumed.load()));
        forSpans(at, count, [&data](T* span, std::size_t n) {
            std::copy(data, data + n, span);
            data += n;
        });
        m_written.store(at + count);
        return count;
    }

    /// Writing thread. As write(), of elements whose value nobody looks at.
    std::size_t pass(std::size_t count) {
        const std::uint64_t at = m_written.load(std::memory_order_relaxed);
        count = std::min(count, m_data.size() - static_cast<std::size_t>(at - m_consumed.load()));
        m_written.store(at + count);
        return count;
    }

    /// Reading thread. Calls use(const T*, count) up to twice for up to `count` elements, in order.
    template <typename Use>
    std::size_t consume(std::size_t count, Use use) {
        const std::uint64_t at = m_consumed.load(std::memory_order_relaxed);
        count = std::min(count, static_cast<std::size_t>(m_written.load() - at));
        forSpans(at, count, [&use](const T* span, std::size_t n) { use(span, n); });
        m_consumed.store(at + count);
        return count;
    }

    /// Reading thread. Drops what was written before `position`.
    void skipTo(std::uint64_t position) {
        if (position > m_consumed.load(std::memory_order_relaxed))
            m_consumed.store(std::min(position, m_written.load()));
    }

  private:
    template <typename Use>
    void forSpans(std::uint64_t at, std::size_t count, Use use) {
        const std::size_t from = static_cast<std::size_t>(at) & m_mask;
        const std::size_t first = std::min(count, m_data.size() - from);
        if (first > 0)
            use(m_data.data() + from, first);
        if (count > first)
            use(m_data.data(), count - first);
    }

    std::vector<T> m_data;
    const std::size_t m_mask;
    std::atomic<std::uint64_t> m_written{0};
    std::atomic<std::uint64_t> m_consumed{0};
};

} // namespace BASS
