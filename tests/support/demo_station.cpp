#include "support/test_station.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

/// The demo station: serves encoded tracks, one a file, in an endless round.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A radio station on the loopback interface."));
    parser.addHelpOption();
    const QCommandLineOption port(QStringLiteral("port"),
                                  QStringLiteral("Port; 0 takes a free one."),
                                  QStringLiteral("n"),
                                  QStringLiteral("0"));
    const QCommandLineOption rate(QStringLiteral("bitrate"),
                                  QStringLiteral("Of the tracks, in bit/s."),
                                  QStringLiteral("n"),
                                  QStringLiteral("128000"));
    const QCommandLineOption speed(QStringLiteral("speed"),
                                   QStringLiteral("Times real time."),
                                   QStringLiteral("n"),
                                   QStringLiteral("1"));
    const QCommandLineOption burst(QStringLiteral("burst"),
                                   QStringLiteral("Bytes sent at once."),
                                   QStringLiteral("n"),
                                   QStringLiteral("16384"));
    const QCommandLineOption type(QStringLiteral("type"),
                                  QStringLiteral("Content type."),
                                  QStringLiteral("type"),
                                  QStringLiteral("audio/mpeg"));
    parser.addOptions({port, rate, speed, burst, type});
    parser.addPositionalArgument(QStringLiteral("tracks"),
                                 QStringLiteral("Encoded files named by their titles."));
    parser.process(app);

    StationScript script;
    script.tracks = tracksFromFiles(parser.positionalArguments());
    script.bytesPerSecond = parser.value(rate).toInt() / 8;
    script.speed = parser.value(speed).toDouble();
    script.burst = parser.value(burst).toLongLong();
    script.contentType = parser.value(type).toLatin1();
    script.metaint = 2048;
    QTextStream out(stdout);
    if (script.tracks.isEmpty()) {
        out << "No tracks to serve.\n";
        return 1;
    }
    TestStation station;
    station.setAudioKept(false);
    station.setScript(script);
    if (!station.listen(static_cast<quint16>(parser.value(port).toUInt()))) {
        out << "The port is taken.\n";
        return 1;
    }
    out << station.url() << '\n';
    out.flush();
    return QCoreApplication::exec();
}
