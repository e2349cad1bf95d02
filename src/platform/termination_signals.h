#pragma once

#include <QObject>

#include <memory>

/// The system's wish that the program ends: SIGTERM, SIGINT and SIGHUP on Linux, the console's
/// close, Ctrl+C and log-off events on Windows.
///
/// *Thread*: lives on the thread that made it and emits there; the system's callbacks only pass a
/// byte or an event on. *Owner*: main(). *Life*: one at a time; its end gives the signals back.
class TerminationSignals final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TerminationSignals)

  public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

  signals:
    void sig_terminate();

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};
