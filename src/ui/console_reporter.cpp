#include "ui/console_reporter.h"

#include "ui/message.h"
#include "ui/player.h"

#include <QDir>

ConsoleReporter::ConsoleReporter(const Player& player,
                                 QIODevice& out,
                                 QIODevice& err,
                                 QObject* parent)
    : QObject(parent), m_out(&out), m_err(&err) {
    m_out.setCodec("UTF-8");
    m_err.setCodec("UTF-8");
    connect(&player, &Player::sig_fileFinished, this, [this](const BASS::RecordedFile& file) {
        write(m_out, tr("Recorded: %1").arg(QDir::toNativeSeparators(file.path)));
    });
    connect(&player, &Player::sig_logLine, this, [this](const QString& text, bool isError) {
        write(m_err, isError ? tr("Error: %1").arg(text) : text);
    });
}

void ConsoleReporter::report(const Message& message) {
    write(m_err,
          message.kind == Message::Kind::Error ? tr("Error: %1").arg(message.text) : message.text);
}

// Titles come from outside: no control characters reach the terminal.
void ConsoleReporter::write(QTextStream& stream, const QString& line) {
    QString clean = line;
    for (QChar& c : clean) {
        if (c.category() == QChar::Other_Control) {
            c = QLatin1Char(' ');
        }
    }
    stream << clean << QLatin1Char('\n');
    stream.flush();
}
