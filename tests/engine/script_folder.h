#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A folder that is searched before all others.
class ScriptFolder {
  public:
    ScriptFolder() : m_path(qgetenv("PATH")) {
        qputenv("PATH", QFile::encodeName(m_folder.path()) + ':' + m_path);
    }
    ~ScriptFolder() { qputenv("PATH", m_path); }
    ScriptFolder(const ScriptFolder&) = delete;
    ScriptFolder& operator=(const ScriptFolder&) = delete;

    void add(const char* name, const QByteArray& script) const {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

  private:
    QTemporaryDir m_folder;
    QByteArray m_path;
};
