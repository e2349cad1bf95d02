#pragma once

#include "recording/stream_recorder.h"

#include <QTemporaryDir>

#include <random>
#include <vector>

struct Title {
    qint64 position; ///< in the fed bytes
    QString text;
};

/// A recorder in a folder of its own, and what it has told.
class RecorderRig {
  public:
    RecorderRig();

    void start(const QString& song = QStringLiteral("Track 0"));
    /// One connection in chunks of random sizes; a title is told as soon as its place was fed, with
    /// its exact position.
    void feed(const QByteArray& stream, const std::vector<Title>& titles = {});
    /// The same without beginning and end of the connection.
    void feedPart(const QByteArray& bytes);
    void title(const QString& text, qint64 position = -1);
    /// stop(), and waits until the recorder has said that it is done.
    void stop();
    /// Waits until the recording has ended, by itself or not.
    void waitForEnd();

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }
    /// The names of the finished files below the folder, in their order.
    [[nodiscard]] QStringList names() const;
    [[nodiscard]] QByteArray joined() const;

    QTemporaryDir folder;
    BASS::RecordingOptions options;
    BASS::StreamRecorder recorder;
    std::vector<BASS::RecordedFile> files;
    std::vector<BASS::RecordingError> errors;
    QStringList opened;
    int finishes = 0;

  private:
    std::mt19937 m_random{20240229};
};
