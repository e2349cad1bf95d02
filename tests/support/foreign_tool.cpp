#include "support/system.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <windows.h>

#include <cstdio>

// Under the name of one of the host's command-line tools (ffmpeg.exe, lame.exe, ...): runs that
// tool for a test under Wine. Wine can start a program of the host, but gives it only files for its
// streams and does not tell when it ends; so this reads its input to a file, starts a shell that
// says when the tool is done, and passes on output and exit code. The tool's output comes at its
// end, all at once. Where this is killed, the shell misses its beat and ends the tool.

namespace {

/// "Z:\tmp\x" as the host knows it; other texts as they are.
QString hostPath(const QString& text) {
    if (text.size() < 3 || text.at(1) != QLatin1Char(':') || !text.at(0).isLetter() ||
        (text.at(2) != QLatin1Char('\\') && text.at(2) != QLatin1Char('/')))
        return text;
    const QString rest = text.mid(2).replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (text.at(0).toUpper() == QLatin1Char('Z'))
        return rest;
    return qEnvironmentVariable("WAVELARK_WINE_FOLDER") + QStringLiteral("/dosdevices/") +
           text.at(0).toLower() + QLatin1Char(':') + rest;
}

QString quoted(QString text) {
    text.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

/// True where the tool reads its standard input; one that does not may be given one without end.
bool readsInput(const QString& tool, const QStringList& arguments) {
    if (tool == QLatin1String("openssl"))
        return true;
    for (int n = 0; n < arguments.size(); ++n) {
        const QString& text = arguments.at(n);
        if (text != QLatin1String("-") && text != QLatin1String("pipe:0"))
            continue;
        const bool isOutput = n == arguments.size() - 1 && tool != QLatin1String("mpg123") &&
                              tool != QLatin1String("ffprobe") &&
                              arguments.value(n - 1) != QLatin1String("-i");
        if (!isOutput)
            return true;
    }
    return false;
}

void copy(std::FILE* from, QIODevice& to) {
    char block[65536];
    while (const std::size_t count = std::fread(block, 1, sizeof block, from))
        to.write(block, static_cast<qint64>(count));
}

void copy(const QString& path, std::FILE* to) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray all = file.readAll();
    std::fwrite(all.constData(), 1, static_cast<std::size_t>(all.size()), to);
    std::fflush(to);
}

/// The folder is open to servers that give up their rights.
constexpr char kScript[] = R"(
PATH=/usr/local/bin:/usr/bin:/bin
export PATH
cd FOLDER || exit
chmod 777 .
touch seen
COMMAND < in > out 2> err &
tool=$!
(
    while sleep 5 && kill -0 $tool; do
        [ beat -nt seen ] || kill -9 $tool
        touch seen
    done
) > /dev/null 2>&1 &
wait $tool
echo $? > end.new
mv end.new end
)";

/// Tells the shell once a second that somebody waits for the tool.
void beat(const QTemporaryDir& work, QElapsedTimer& last) {
    if (last.isValid() && last.elapsed() < 1000)
        return;
    QFile file(work.filePath(QStringLiteral("beat")));
    if (file.open(QIODevice::WriteOnly))
        file.write(QByteArray::number(QDateTime::currentMSecsSinceEpoch()));
    last.start();
}

bool startShell(const QString& script) {
    // The loader of this system takes the shell for what it is: no Windows program.
    std::wstring command = (QStringLiteral("Z:\\bin\\sh ") + hostPath(script)).toStdWString();
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    return CreateProcessW(L"Z:\\bin\\sh",
                          command.data(),
                          nullptr,
                          nullptr,
                          FALSE,
                          0,
                          nullptr,
                          nullptr,
                          &startup,
                          &process) != 0;
}

} // namespace

int main(int argc, char** argv) {
    test_system::makeStandardStreamsBinary();
    const QCoreApplication app(argc, argv);
    const QString tool = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    QString command = quoted(tool);
    for (const QString& argument : arguments)
        command += QLatin1Char(' ') + quoted(hostPath(argument));

    const QTemporaryDir work(QStringLiteral("Z:/tmp/wavelark-tool-XXXXXX"));
    const QString folder = quoted(hostPath(work.path()));
    {
        QFile input(work.filePath(QStringLiteral("in")));
        if (!input.open(QIODevice::WriteOnly))
            return 126;
        if (readsInput(tool, arguments))
            copy(stdin, input);
        QFile script(work.filePath(QStringLiteral("run")));
        if (!script.open(QIODevice::WriteOnly))
            return 126;
        script.write(QByteArray(kScript)
                         .replace("FOLDER", folder.toUtf8())
                         .replace("COMMAND", command.toUtf8()));
    }
    QElapsedTimer beaten;
    beat(work, beaten);
    if (!startShell(work.filePath(QStringLiteral("run"))))
        return 127;
    QFile end(work.filePath(QStringLiteral("end")));
    QElapsedTimer timer;
    timer.start();
    while (!end.exists()) {
        if (timer.elapsed() > 120000)
            return 124;
        beat(work, beaten);
        QThread::msleep(5);
    }
    copy(work.filePath(QStringLiteral("out")), stdout);
    copy(work.filePath(QStringLiteral("err")), stderr);
    return end.open(QIODevice::ReadOnly) ? end.readAll().trimmed().toInt() : 126;
}
