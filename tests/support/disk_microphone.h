#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

/// A recording device that hears a tone, left at half, right at a quarter of full scale: SDL's
/// "disk" driver. What is played goes to a file too.
class DiskMicrophone {
  public:
    explicit DiskMicrophone(double seconds) : m_driver(qgetenv("SDL_AUDIODRIVER")) {
        QByteArray sound;
        constexpr float kPi = 3.14159265F;
        for (int n = 0; n < static_cast<int>(seconds * 44100); ++n)
            for (const float amplitude : {0.5F, 0.25F}) {
                const float value =
                    amplitude * std::sin(2.0F * kPi * 441.0F * static_cast<float>(n) / 44100.0F);
                sound.append(reinterpret_cast<const char*>(&value), sizeof(value));
            }
        QFile file(m_folder.filePath(QStringLiteral("in.f32")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(sound);
        qputenv("SDL_AUDIODRIVER", "disk");
        qputenv("SDL_DISKAUDIOFILEIN", file.fileName().toLocal8Bit());
        qputenv("SDL_DISKAUDIOFILE", m_folder.filePath(QStringLiteral("out.f32")).toLocal8Bit());
    }
    ~DiskMicrophone() {
        qunsetenv("SDL_DISKAUDIOFILEIN");
        qunsetenv("SDL_DISKAUDIOFILE");
        qputenv("SDL_AUDIODRIVER", m_driver);
    }
    Q_DISABLE_COPY_MOVE(DiskMicrophone)

  private:
    QByteArray m_driver;
    QTemporaryDir m_folder;
};
