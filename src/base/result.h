#pragma once

#include <QString>

#include <utility>
#include <variant>

/// Why an operation did not come off, in words that may be shown to the user.
struct Error {
    QString message;
};

/// A value or the reason why there is none. Thread: a plain value, no thread of its own.
template <typename T>
class [[nodiscard]] Result {
  public:
    Result(T value) : m_state(std::move(value)) {}     // NOLINT(google-explicit-constructor)
    Result(Error error) : m_state(std::move(error)) {} // NOLINT(google-explicit-constructor)

    [[nodiscard]] bool isOk() const { return std::holds_alternative<T>(m_state); }
    explicit operator bool() const { return isOk(); }
    /// Only where isOk().
    [[nodiscard]] const T& value() const { return std::get<T>(m_state); }
    [[nodiscard]] T& value() { return std::get<T>(m_state); }
    /// Only where not isOk().
    [[nodiscard]] const QString& error() const { return std::get<Error>(m_state).message; }

  private:
    std::variant<T, Error> m_state;
};

/// Success carries nothing.
struct Done {};
using Status = Result<Done>;
