#pragma once

#include <QByteArray>
#include <QString>

/// Audio made with the ffmpeg program, once a process: short, below full scale, and different in
/// every part, so that a shift or a loss shows.
enum class Track {
    Mp3,
    Mp3Joint,
    Mp2,
    Adts,
    Vorbis,
    Opus,
    OggFlac,
    Flac,
    M4a,
    M4aIndexLast,
    Wma,
    Wav,
    Aiff,
    Mono
};

constexpr double kTrackSeconds = 3.0;

/// The file's bytes; empty where the program is missing.
const QByteArray& track(Track which, const char* title = "First");
/// The same as a file, for players of files.
QString trackPath(Track which, const char* title = "First");
/// What ffmpeg decodes from these bytes: interleaved stereo floats at 44.1 kHz.
QByteArray decodedByFfmpeg(const QString& path);
