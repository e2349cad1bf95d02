#pragma once

#include <QDateTime>

#include <chrono>

/// Where code that decides takes its time from, so that tests can give it another one.
/// Thread: implementations answer from any thread.
class Clock {
  public:
    virtual ~Clock() = default;
    /// Never runs backwards; the zero is arbitrary.
    [[nodiscard]] virtual std::chrono::milliseconds steady() const = 0;
    /// Local wall-clock time.
    [[nodiscard]] virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock {
  public:
    [[nodiscard]] std::chrono::milliseconds steady() const override;
    [[nodiscard]] QDateTime now() const override;
};
