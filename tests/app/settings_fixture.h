#pragma once

#include "app/app_settings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A data folder of its own for each test.
class SettingsTest : public ::testing::Test {
  protected:
    [[nodiscard]] DataFolder folder() const {
        DataFolder result;
        result.path = m_dir.path();
        result.applicationDir = m_dir.filePath(QStringLiteral("application"));
        return result;
    }

    [[nodiscard]] QString iniPath() const {
        return m_dir.filePath(QStringLiteral("Brindlecove/Wavelark.ini"));
    }

    void writeIni(const QByteArray& bytes) const {
        QDir().mkpath(m_dir.filePath(QStringLiteral("Brindlecove")));
        QFile file(iniPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    [[nodiscard]] QByteArray readIni() const { return readFile(iniPath()); }

    [[nodiscard]] static QByteArray readFile(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QStringList setAsideFiles() const {
        const QDir iniFolder(m_dir.filePath(QStringLiteral("Brindlecove")));
        return iniFolder.entryList({QStringLiteral("*.damaged*")}, QDir::Files);
    }

    QTemporaryDir m_dir;
};
