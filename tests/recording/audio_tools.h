#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

// Real streams and their decodes, by the encoders and decoders that people use.

struct Decoded {
    std::vector<float> samples; ///< interleaved
    QString messages;           ///< what the decoder had to say
};

struct Tones {
    int seconds = 12;
    int sampleRate = 44100;
    int channels = 2;
    int first = 300; ///< Hz; another tone every three seconds, and noise beneath all of them
};

/// `arguments`: the encoder's and the container's, as ffmpeg takes them. Made once per process.
QByteArray encoded(const QStringList& arguments, const Tones& tones = {});
/// MPEG audio by lame, without the frame that describes a whole file.
QByteArray lameEncoded(const QStringList& arguments, const Tones& tones = {});

Decoded decodedByFfmpeg(const QString& path);
Decoded decodedByMpg123(const QString& path);
/// -1: not told.
double probedSeconds(const QString& path);

QByteArray fileBytes(const QString& path);
/// Without an ID3v2 tag in front.
QByteArray audioBytes(const QString& path);
/// A file of its own in the process's temporary folder.
QString fileWith(const QByteArray& bytes, const QString& suffix);

struct Difference {
    double largest = 0;
    std::size_t first = 0; ///< where it exceeds a ten-thousandth
    std::size_t count = 0;
};
/// Compares the ends of two decodes, as much as the shorter one has.
Difference difference(const std::vector<float>& whole, const std::vector<float>& part);

/// The whole frames of a stream that begins with one.
std::vector<QByteArray> mpegFrames(const QByteArray& stream);
