#pragma once

#include <QObject>

#include <cstdio>

class Player;
struct Message;

/// Says on the console what a window would show, for runs without one: finished files on the output
/// stream, one "Recorded: path" a line; what happens and errors on the error stream.
///
/// *Thread*: GUI. *Owner*: main().
class ConsoleReporter final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ConsoleReporter)

  public:
    /// The streams are not owned; every line is flushed.
    ConsoleReporter(const Player& player,
                    std::FILE* out,
                    std::FILE* err,
                    QObject* parent = nullptr);

    void report(const Message& message);

  private:
    std::FILE* m_out;
    std::FILE* m_err;
};
