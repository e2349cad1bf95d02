#include "e2e/program_run.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <filesystem>

bool putFiles(const QString& from, const QString& pattern, const QString& to) {
    const QFileInfoList files = QDir(from).entryInfoList({pattern}, QDir::Files);
    const auto put = [&to](const QFileInfo& file) {
        const QString copy = QDir(to).filePath(file.fileName());
        std::error_code failed;
        std::filesystem::create_hard_link(
            file.filePath().toStdU16String(), copy.toStdU16String(), failed);
        return !failed || QFile::copy(file.filePath(), copy);
    };
    return !files.isEmpty() && std::all_of(files.begin(), files.end(), put);
}

QString copyOfProgram(const QString& folder) {
    const QFileInfo built(QStringLiteral(WAVELARK_PROGRAM));
    const bool isThere = putFiles(built.path(), QStringLiteral("*wavelark*"), folder);
    return isThere ? QDir(folder).filePath(built.fileName()) : QString();
}

ProgramRun::ProgramRun() : m_environment(QProcessEnvironment::systemEnvironment()) {
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    m_environment.insert(QStringLiteral("SDL_AUDIODRIVER"), QStringLiteral("dummy"));
    // what Qt's offscreen platform leaves behind is no fault of the program
    m_environment.insert(
        QStringLiteral("LSAN_OPTIONS"),
        QStringLiteral("print_suppressions=0:suppressions=" WAVELARK_SOURCE "/tools/lsan.supp"));
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

ProgramRun::ProgramRun(const ProgramRun& first) : ProgramRun() {
    m_dataFolder = first.m_dataFolder;
    m_program = first.m_program;
}

ProgramRun::~ProgramRun() {
    kill();
}

void ProgramRun::setSetting(const QString& key, const QString& value) {
    QDir(m_dataFolder).mkpath(QStringLiteral("Brindlecove"));
    QSettings file(m_dataFolder + QStringLiteral("/Brindlecove/Wavelark.ini"),
                   QSettings::IniFormat);
    file.setValue(key, value);
}

void ProgramRun::setEnvironment(const QString& name, const QString& value) {
    m_environment.insert(name, value);
}

void ProgramRun::start(const QStringList& arguments) {
    m_environment.insert(QStringLiteral("WAVELARK_DATA"), m_dataFolder);
    m_process.setProcessEnvironment(m_environment);
    m_process.start(m_program, arguments);
    m_process.waitForStarted();
}

bool ProgramRun::waitForEnd(std::chrono::seconds limit) {
    const bool isOver = m_process.state() == QProcess::NotRunning ||
                        m_process.waitForFinished(static_cast<int>(limit.count()) * 1000);
    m_output += QString::fromUtf8(m_process.readAll());
    return isOver;
}

bool ProgramRun::waitForOutput(const QString& text, std::chrono::seconds limit) {
    QElapsedTimer timer;
    timer.start();
    while (!output().contains(text)) {
        if (timer.elapsed() > limit.count() * 1000 || m_process.state() == QProcess::NotRunning)
            return false;
        m_process.waitForReadyRead(100);
    }
    return true;
}

bool ProgramRun::waitForLog(const QString& text, std::chrono::seconds limit) {
    QElapsedTimer timer;
    timer.start();
    while (!log().contains(text)) {
        if (timer.elapsed() > limit.count() * 1000 || m_process.state() == QProcess::NotRunning)
            return false;
        m_process.waitForReadyRead(20);
    }
    return true;
}

void ProgramRun::kill() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

QString ProgramRun::log() const {
    QFile file(m_dataFolder + QStringLiteral("/Wavelark.log"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString ProgramRun::output() {
    m_output += QString::fromUtf8(m_process.readAll());
    return m_output;
}

QStringList ProgramRun::recordings() const {
    QStringList paths;
    QDirIterator it(recordingFolder(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        paths.append(it.next());
    // a tagged file is a new one by its dates: the program says in which order they were finished
    const auto place = [this](const QString& path) {
        const int at = m_output.indexOf(QStringLiteral("Recorded: ") + path);
        return at < 0 ? m_output.size() : at;
    };
    std::sort(paths.begin(), paths.end(), [&place](const QString& a, const QString& b) {
        return place(a) != place(b) ? place(a) < place(b)
                                    : QFileInfo(a).birthTime() < QFileInfo(b).birthTime();
    });
    return paths;
}
