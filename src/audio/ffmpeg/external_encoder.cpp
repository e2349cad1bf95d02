#include "audio/ffmpeg/external_encoder.h"

#include "audio/bass_defs.h"
#include "audio/ffmpeg/pcm_converter.h"
#include "base/log.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QtEndian>

extern "C" {
#include <libavutil/samplefmt.h>
}

namespace BASS {
namespace {

constexpr int kPollMs = 20;
constexpr int kStartMs = 5000;
/// What waits in Qt's own buffer for the pipe.
constexpr qint64 kMostUnsent = 256 * 1024;

bool isProgram(const QString& path) {
    const QFileInfo file(path);
    return (file.isFile() && file.isExecutable()) ||
           !QStandardPaths::findExecutable(path).isEmpty();
}

} // namespace

QStringList splitEncoderCommand(const QString& line,
                                const std::function<bool(const QString&)>& isFile) {
    QStringList words = QProcess::splitCommand(line);
    if (words.isEmpty() || isFile(words.first()))
        return words;
    QString path;
    for (int n = 0; n < words.size(); ++n) {
        path += (n > 0 ? QStringLiteral(" ") : QString()) + words[n];
        if (isFile(path))
            return QStringList{path} + words.mid(n + 1);
    }
    return words;
}

ExternalEncoder::ExternalEncoder(Setup setup, Write write)
    : m_setup(std::move(setup)), m_write(std::move(write)) {}

ExternalEncoder::~ExternalEncoder() {
    if (m_process && m_process->state() != QProcess::NotRunning) {
        m_process->kill();
        m_process->waitForFinished(kStartMs);
    }
}

int ExternalEncoder::open() {
    QStringList words = splitEncoderCommand(m_setup.commandLine, isProgram);
    if (words.isEmpty() || !isProgram(words.first()))
        return BASS_ERROR_FILEOPEN;
    m_converter = std::make_unique<PcmConverter>(
        PcmConverter::Input{m_setup.inputRate, 2},
        PcmConverter::Output{m_setup.rate,
                             m_setup.channels,
                             m_setup.isFloat ? AV_SAMPLE_FMT_FLT : AV_SAMPLE_FMT_S16});
    if (!m_converter->isValid())
        return BASS_ERROR_FORMAT;
    m_process = std::make_unique<QProcess>();
    const QString program = words.takeFirst();
    m_process->start(program, words);
    if (!m_process->waitForStarted(kStartMs)) {
        qCWarning(lcAudio, "encoder does not start program=%s", qUtf8Printable(program));
        return BASS_ERROR_FILEOPEN;
    }
    const QByteArray header = m_setup.hasHeader ? wavHeader() : QByteArray();
    // one that is gone already was there: its end is found with the first samples
    (void)send(header.constData(), header.size());
    return BASS_OK;
}

/// RIFF WAVE with the greatest length, as is usual where the length is not known.
QByteArray ExternalEncoder::wavHeader() const {
    constexpr quint32 kEndless = 0xFFFFFFFF;
    constexpr quint16 kPcm = 1;
    constexpr quint16 kFloat = 3;
    const auto channels = static_cast<quint16>(m_setup.channels);
    const auto sampleBytes = static_cast<quint16>(m_setup.isFloat ? 4 : 2);
    const auto frameBytes = static_cast<quint16>(channels * sampleBytes);
    const auto rate = static_cast<quint32>(m_setup.rate);
    QByteArray result;
    const auto put = [&result](auto value) {
        const auto little = qToLittleEndian(value);
        result.append(reinterpret_cast<const char*>(&little), sizeof little);
    };
    result += "RIFF";
    put(kEndless);
    result += "WAVEfmt ";
    put(quint32{16});
    put(m_setup.isFloat ? kFloat : kPcm);
    put(channels);
    put(rate);
    put(quint32{rate * frameBytes});
    put(frameBytes);
    put(static_cast<quint16>(sampleBytes * 8));
    result += "data";
    put(kEndless);
    return result;
}

bool ExternalEncoder::fail(const char* what) {
    const QByteArray said = m_process->readAllStandardError().right(200).simplified();
    qCWarning(lcAudio,
              "encoder program failed reason=%s exit=%d said=%s",
              what,
              m_process->exitCode(),
              said.constData());
    return false;
}

void ExternalEncoder::takeOutput() {
    const QByteArray out = m_process->readAllStandardOutput();
    if (out.isEmpty())
        return;
    m_write(reinterpret_cast<const std::uint8_t*>(out.constData()),
            static_cast<std::size_t>(out.size()),
            m_length);
    m_length += out.size();
}

/// Lets bytes flow both ways for a moment. False: the program has ended.
bool ExternalEncoder::pump(int milliseconds) {
    if (m_process->bytesToWrite() > 0)
        m_process->waitForBytesWritten(milliseconds);
    else
        m_process->waitForReadyRead(milliseconds);
    takeOutput();
    return m_process->state() == QProcess::Running;
}

bool ExternalEncoder::send(const char* data, qint64 size) {
    if (m_process->state() != QProcess::Running)
        return fail("it has ended");
    m_process->write(data, size);
    QElapsedTimer quiet;
    quiet.start();
    qint64 unsent = m_process->bytesToWrite();
    while (unsent > kMostUnsent) {
        if (!pump(kPollMs))
            return fail("it has ended");
        const qint64 now = m_process->bytesToWrite();
        if (now < unsent)
            quiet.start();
        else if (quiet.elapsed() > m_setup.patience.count())
            return fail("it takes nothing");
        unsent = now;
    }
    return pump(0) || fail("it has ended");
}

bool ExternalEncoder::sendConverted(const float* samples, std::size_t frames) {
    const int got = m_converter->convert(samples, frames);
    if (got <= 0)
        return got == 0;
    const int bytes = got * m_setup.channels * (m_setup.isFloat ? 4 : 2);
    return send(static_cast<const char*>(*m_converter->planes()), bytes);
}

bool ExternalEncoder::encode(const float* samples, std::size_t frames) {
    return sendConverted(samples, frames);
}

bool ExternalEncoder::tend() {
    return pump(0) || fail("it has ended");
}

bool ExternalEncoder::finish() {
    if (!sendConverted(nullptr, 0))
        return false;
    m_process->closeWriteChannel(); // once all has been sent
    QElapsedTimer quiet;
    quiet.start();
    std::int64_t length = m_length;
    qint64 unsent = m_process->bytesToWrite();
    while (pump(kPollMs)) {
        if (m_length != length || m_process->bytesToWrite() != unsent)
            quiet.start();
        else if (quiet.elapsed() > m_setup.patience.count())
            return fail("it does not end");
        length = m_length;
        unsent = m_process->bytesToWrite();
    }
    takeOutput();
    const bool isGood = m_process->exitStatus() == QProcess::NormalExit &&
                        m_process->exitCode() == 0 && unsent == 0;
    return isGood || fail("it ended with an error");
}

} // namespace BASS
