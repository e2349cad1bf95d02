#pragma once

#include <QtGlobal>

#include <memory>

/// Keeps the computer from going to sleep by itself while a recording runs. The user can still
/// send it to sleep, and the display may go dark.
/// Windows: the thread's execution state. Linux: an "idle" lock of the login manager
/// (org.freedesktop.login1, Inhibit); where there is none, nothing happens.
/// Thread: GUI; never blocks. Owner: whoever records. Life: its end lets the computer sleep again.
class KeepAwake {
  public:
    KeepAwake();
    ~KeepAwake();
    Q_DISABLE_COPY_MOVE(KeepAwake)

    void setActive(bool isActive);
    /// What was asked for; whether the system grants it is its own affair.
    [[nodiscard]] bool isActive() const;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};
