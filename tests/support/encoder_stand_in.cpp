#include "support/system.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

// An encoder program that does what ENCODER_STEPS says, step by step, divided by ";": a good one,
// a broken one, a stuck one. Tests start it by itself or put a copy of it in the search path under
// an encoder's name.

namespace {

/// Reads so much of the standard input, all where it is less than nothing, and writes it where
/// `isCopied`.
void take(qint64 bytes, bool isCopied) {
    char block[8192];
    while (bytes != 0) {
        const auto most = static_cast<unsigned>(sizeof block);
        const qint64 got = test_system::readStandardInput(
            block, bytes < 0 || bytes > most ? most : static_cast<unsigned>(bytes));
        if (got <= 0)
            return;
        bytes -= bytes < 0 ? 0 : got;
        if (isCopied)
            std::fwrite(block, 1, static_cast<std::size_t>(got), stdout);
    }
}

void makeNoise(qint64 bytes) {
    quint32 state = 1;
    for (; bytes > 0; --bytes) {
        state = state * 1664525U + 1013904223U;
        std::fputc(static_cast<int>(state >> 24), stdout);
    }
}

/// The arguments that the program was given.
void writeArguments(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(QCoreApplication::arguments().mid(1).join(QLatin1Char(' ')).toUtf8());
}

/// What the two programs are told of their input: "-R48000 -C2", or as fifth and sixth argument.
QStringList toldFormat() {
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    QString rate = arguments.value(4);
    QString channels = arguments.value(5);
    for (const QString& argument : arguments) {
        if (argument.startsWith(QLatin1String("-R")))
            rate = argument.mid(2);
        else if (argument.startsWith(QLatin1String("-C")))
            channels = argument.mid(2);
    }
    return {QStringLiteral("-ar"), rate, QStringLiteral("-ac"), channels};
}

/// Believes what it is told.
int encodeAdts() {
    QProcess encoder;
    encoder.setProcessChannelMode(QProcess::ForwardedChannels);
    encoder.setInputChannelMode(QProcess::ForwardedInputChannel);
    encoder.start(QStringLiteral("ffmpeg"),
                  QStringList{QStringLiteral("-v"),
                              QStringLiteral("error"),
                              QStringLiteral("-f"),
                              QStringLiteral("s16le")} +
                      toldFormat() +
                      QStringLiteral("-i - -c:a aac -f adts -").split(QLatin1Char(' ')));
    return encoder.waitForFinished(-1) ? encoder.exitCode() : 1;
}

int run(const QString& step, const QString& value) {
    if (step == QLatin1String("copy"))
        take(-1, true);
    else if (step == QLatin1String("take"))
        take(value.isEmpty() ? -1 : value.toLongLong(), false);
    else if (step == QLatin1String("noise"))
        makeNoise(value.toLongLong());
    else if (step == QLatin1String("say"))
        std::fputs(qPrintable(value), stdout);
    else if (step == QLatin1String("note"))
        writeArguments(value);
    else if (step == QLatin1String("hang"))
        std::this_thread::sleep_for(std::chrono::minutes(10));
    else if (step == QLatin1String("crash"))
        std::abort();
    else if (step == QLatin1String("adts"))
        return encodeAdts();
    else if (step == QLatin1String("exit"))
        std::exit(value.toInt());
    else
        return 2;
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    test_system::makeStandardStreamsBinary();
    int result = 0;
    for (const QString& text : qEnvironmentVariable("ENCODER_STEPS").split(QLatin1Char(';'))) {
        const QString step = text.trimmed();
        if (result == 0)
            result = run(step.section(QLatin1Char(' '), 0, 0), step.section(QLatin1Char(' '), 1));
    }
    return result;
}
