#pragma once

#include "audio/ffmpeg/pcm_encoder.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

class QProcess;

namespace BASS {

class PcmConverter;

/// Program and arguments of a command line. A program's path may hold blanks without being quoted:
/// the shortest run of words that names a file wins.
QStringList splitEncoderCommand(const QString& line,
                                const std::function<bool(const QString&)>& isFile);

/// An encoder program between two pipes, without a shell. Its death, its silence and what it prints
/// to its standard error are noticed and logged. *Thread*: one made by Qt.
class ExternalEncoder final : public PcmEncoder {
  public:
    struct Setup {
        QString commandLine;
        int inputRate = 44100;
        int rate = 44100;
        int channels = 2;
        bool isFloat = false;
        bool hasHeader = true;
        std::chrono::milliseconds patience{5000}; ///< taking nothing for so long: stuck
    };

    ExternalEncoder(Setup setup, Write write);
    ~ExternalEncoder() override;

    int open() override;
    bool encode(const float* samples, std::size_t frames) override;
    bool finish() override;
    bool tend() override;
    [[nodiscard]] bool needsCare() const override { return true; }

  private:
    bool pump(int milliseconds);
    bool send(const char* data, qint64 size);
    bool sendConverted(const float* samples, std::size_t frames);
    void takeOutput();
    bool fail(const char* what);
    QByteArray wavHeader() const;

    const Setup m_setup;
    const Write m_write;
    std::int64_t m_length = 0;
    std::unique_ptr<PcmConverter> m_converter;
    std::unique_ptr<QProcess> m_process;
};

} // namespace BASS
