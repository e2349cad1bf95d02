#pragma once

#include "support/system.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>

/// Puts the files of the folder that fit the pattern into another: as links where that goes.
/// False where one of them cannot be put there or there is none.
bool putFiles(const QString& from, const QString& pattern, const QString& to);

/// The program with its libraries in a folder of its own: its path, empty where that fails.
QString copyOfProgram(const QString& folder);

/// The real program, without display and sound, in a data folder of its own.
class ProgramRun {
  public:
    ProgramRun();
    /// Another start of the program in the data folder of the first.
    explicit ProgramRun(const ProgramRun& first);
    ~ProgramRun();
    ProgramRun& operator=(const ProgramRun&) = delete;

    /// Another place of the program's files than the build folder, and of its data.
    void setProgram(const QString& path) { m_program = path; }
    void setDataFolder(const QString& path) { m_dataFolder = path; }

    /// A setting of the INI file, before start().
    void setSetting(const QString& key, const QString& value);
    void setEnvironment(const QString& name, const QString& value);
    void start(const QStringList& arguments);
    /// False where it still runs after the limit.
    bool waitForEnd(std::chrono::seconds limit);
    /// Waits until what it printed contains the text.
    bool waitForOutput(const QString& text, std::chrono::seconds limit);
    /// The same for its log file.
    bool waitForLog(const QString& text, std::chrono::seconds limit);
    void kill();
    /// Asks it to end in order.
    bool askToEnd() { return test_system::askToEnd(m_process.processId()); }
    [[nodiscard]] int exitCode() const { return m_process.exitCode(); }
    [[nodiscard]] bool isCrashed() const { return m_process.exitStatus() == QProcess::CrashExit; }
    [[nodiscard]] QString output();
    [[nodiscard]] qint64 processId() const { return m_process.processId(); }
    [[nodiscard]] QString dataFolder() const { return m_dataFolder; }
    [[nodiscard]] QString recordingFolder() const {
        return m_dataFolder + QStringLiteral("/Recordings");
    }
    /// What stands in the log file by now.
    [[nodiscard]] QString log() const;
    /// Every recorded file in the order in which they were begun.
    [[nodiscard]] QStringList recordings() const;

  private:
    QTemporaryDir m_folder;
    QString m_dataFolder = m_folder.path();
    QString m_program = QStringLiteral(WAVELARK_PROGRAM);
    QProcess m_process;
    QProcessEnvironment m_environment;
    QString m_output;
};
