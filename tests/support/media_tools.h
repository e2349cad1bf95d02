#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// Encoding and checking with the ffmpeg command-line tools, for tests. They block.
namespace media {

struct Tone {
    int frequency; ///< Hz
    double seconds;
    QStringList
        codec; ///< ffmpeg's output options, {"-c:a", "libmp3lame", "-b:a", "128k"} for example
    QString container; ///< ffmpeg's -f
    QString title;     ///< written as a tag where the container has tags; may be empty
    int sampleRate = 44100;
};

/// An encoded tone; empty on failure.
QByteArray encodeTone(const Tone& tone);

/// What `ffmpeg -v error` prints when it decodes the file; empty: nothing wrong.
QString decodeErrors(const QString& path);

/// The decoded audio as 16-bit samples of one channel, rate in Hz; nothing on failure.
std::optional<QByteArray> decodedMono(const QString& path, int rate);

/// Length of the decoded audio in seconds; negative on failure.
double decodedSeconds(const QString& path);

/// The value of one entry of ffprobe ("format=duration", "stream=codec_name").
QString probe(const QString& path, const QString& entry);

/// The bytes behind an ID3v2 tag at the start (ID3v2.4 structure, section 3.1); all, without one.
QByteArray withoutId3(const QByteArray& file);

/// What an MP3 file of a recording holds of the stream: without its tag, its Info frame and, where
/// `hasPreRoll`, without the frames before the cut that the Info frame marks as encoder delay.
QByteArray mp3StreamBytes(const QByteArray& file, bool hasPreRoll);

} // namespace media
