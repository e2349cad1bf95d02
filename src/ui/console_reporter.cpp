#include "ui/console_reporter.h"

#include "ui/message.h"
#include "ui/player.h"

#include <QDir>

namespace {

/// Titles come from outside: no control characters reach the terminal.
void write(std::FILE* stream, QString line) {
    for (QChar& c : line) {
        if (c.category() == QChar::Other_Control) {
            c = QLatin1Char(' ');
        }
    }
    std::fprintf(stream, "%s\n", qUtf8Printable(line));
    std::fflush(stream);
}

} // namespace

ConsoleReporter::ConsoleReporter(const Player& player,
                                 std::FILE* out,
                                 std::FILE* err,
                                 QObject* parent)
    : QObject(parent), m_out(out), m_err(err) {
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
