#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>

/// The real program, without display and sound, in a data folder of its own.
class ProgramRun {
  public:
    ProgramRun();
    ~ProgramRun();

    /// A setting of the INI file, before start().
    void setSetting(const QString& key, const QString& value);
    void setEnvironment(const QString& name, const QString& value);
    void start(const QStringList& arguments);
    /// False where it still runs after the limit.
    bool waitForEnd(std::chrono::seconds limit);
    /// Waits until what it printed contains the text.
    bool waitForOutput(const QString& text, std::chrono::seconds limit);
    void kill();
    [[nodiscard]] int exitCode() const { return m_process.exitCode(); }
    [[nodiscard]] bool isCrashed() const { return m_process.exitStatus() == QProcess::CrashExit; }
    [[nodiscard]] QString output();
    [[nodiscard]] qint64 processId() const { return m_process.processId(); }
    [[nodiscard]] QString dataFolder() const { return m_folder.path(); }
    [[nodiscard]] QString recordingFolder() const {
        return m_folder.filePath(QStringLiteral("Recordings"));
    }
    /// Every recorded file in the order in which they were begun.
    [[nodiscard]] QStringList recordings() const;

  private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QProcessEnvironment m_environment;
    QString m_output;
};
