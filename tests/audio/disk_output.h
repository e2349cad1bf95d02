#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// What reached the device, written by SDL's "disk" driver in real time.
class DiskOutput {
  public:
    DiskOutput() : m_driver(qgetenv("SDL_AUDIODRIVER")) {
        qputenv("SDL_AUDIODRIVER", "disk");
        qputenv("SDL_DISKAUDIOFILE", path().toLocal8Bit());
    }
    ~DiskOutput() {
        qunsetenv("SDL_DISKAUDIOFILE");
        qputenv("SDL_AUDIODRIVER", m_driver);
    }
    Q_DISABLE_COPY_MOVE(DiskOutput)

    /// 0: it has not been opened.
    [[nodiscard]] qint64 size() const { return QFile(path()).size(); }
    [[nodiscard]] QByteArray bytes() const {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

  private:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("out.f32")); }

    QByteArray m_driver;
    QTemporaryDir m_folder;
};
