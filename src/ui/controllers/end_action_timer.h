#pragma once

#include "app/command_line.h"

#include <QMetaType>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

class Clock;

/// Waits for the end of a timed run, in steady time: setting the clock does not move the end.
///
/// *Thread*: GUI. *Owner*: the main window. *Life*: start() and cancel() in any order; sig_due
/// comes at most once per start().
class EndActionTimer final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(EndActionTimer)

  public:
    explicit EndActionTimer(const Clock& clock, QObject* parent = nullptr);

    /// A duration of 0 or less starts nothing. A run that is under way is replaced.
    void start(std::chrono::seconds duration, EndAction action);
    void cancel();
    [[nodiscard]] bool isRunning() const { return m_run.has_value(); }
    /// 0 where nothing runs.
    [[nodiscard]] std::chrono::milliseconds remaining() const;

    /// Looks at the clock; called by a timer of its own every second.
    void check();

  signals:
    void sig_due(EndAction action);

  private:
    struct Run {
        std::chrono::milliseconds begin;
        std::chrono::milliseconds duration;
        EndAction action;
    };

    const Clock& m_clock;
    QTimer m_timer;
    std::optional<Run> m_run;
};

Q_DECLARE_METATYPE(EndAction)
