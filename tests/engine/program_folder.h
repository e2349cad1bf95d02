#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A folder that is searched before all others, with encoders that do what they are told.
class ProgramFolder {
  public:
    ProgramFolder() : m_path(qgetenv("PATH")) {
        // the encoder's own encoder lies beside the tests where they run on a foreign system
        const QStringList folders{m_folder.path(), QCoreApplication::applicationDirPath()};
        QByteArray path;
        for (const QString& folder : folders)
            path += QFile::encodeName(QDir::toNativeSeparators(folder)) + separator();
        qputenv("PATH", path + m_path);
    }
    ~ProgramFolder() { qputenv("PATH", m_path); }
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;

    void add(const char* name) const {
        const QString program = QStringLiteral(ENCODER_STAND_IN);
        const QString suffix = QFileInfo(program).suffix();
        ASSERT_TRUE(QFile::copy(program,
                                m_folder.filePath(QString::fromLatin1(name)) +
                                    (suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix)));
    }

  private:
    static char separator() { return QDir::listSeparator().toLatin1(); }

    QTemporaryDir m_folder;
    QByteArray m_path;
};
