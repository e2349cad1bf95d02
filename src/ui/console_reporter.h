#pragma once

#include <QObject>
#include <QTextStream>

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
    /// The devices are not owned.
    ConsoleReporter(const Player& player,
                    QIODevice& out,
                    QIODevice& err,
                    QObject* parent = nullptr);

    void report(const Message& message);

  private:
    void write(QTextStream& stream, const QString& line);

    QTextStream m_out;
    QTextStream m_err;
};
