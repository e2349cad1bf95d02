#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Text put together in a block of fixed size, for a handler that may not allocate. What does not
/// fit is left out. Any thread; a plain value.
class CrashText {
  public:
    CrashText& text(const char* words);
    CrashText& number(std::uint64_t value);
    /// "0x" and the digits that there are.
    CrashText& hex(std::uint64_t value);
    /// "2026-02-28T23:59:59Z" from seconds since 1970, in UTC.
    CrashText& time(std::int64_t seconds);

    [[nodiscard]] const char* data() const { return m_bytes.data(); }
    [[nodiscard]] std::size_t size() const { return m_size; }

  private:
    CrashText& digits(std::uint64_t value, unsigned base, std::size_t least);

    std::array<char, 1024> m_bytes{};
    std::size_t m_size = 0;
};
