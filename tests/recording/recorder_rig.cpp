#include "recording/recorder_rig.h"

#include "recording/audio_tools.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

using BASS::StreamRecorder;

RecorderRig::RecorderRig() {
    options.folder = folder.filePath(QStringLiteral("music"));
    options.patternSplit = QStringLiteral("%track_or_title%");
    options.patternNoSplit = QStringLiteral("%title%");
    options.station.station = QStringLiteral("Station");
    QObject::connect(&recorder,
                     &StreamRecorder::sig_fileOpened,
                     &recorder,
                     [this](const QString& path) { opened << path; });
    QObject::connect(&recorder,
                     &StreamRecorder::sig_fileFinished,
                     &recorder,
                     [this](const BASS::RecordedFile& file) { files.push_back(file); });
    QObject::connect(&recorder,
                     &StreamRecorder::sig_failed,
                     &recorder,
                     [this](const BASS::RecordingError& error) { errors.push_back(error); });
    QObject::connect(&recorder, &StreamRecorder::sig_finished, &recorder, [this] { ++finishes; });
}

void RecorderRig::start(const QString& song) {
    recorder.start(options, BASS::songFromTrack(song));
}

void RecorderRig::feedPart(const QByteArray& bytes) {
    std::uniform_int_distribution<int> sizes(1, 5000);
    for (int at = 0; at < bytes.size();) {
        const int size = std::min(sizes(m_random), bytes.size() - at);
        recorder.append(bytes.constData() + at, size);
        at += size;
    }
}

void RecorderRig::feed(const QByteArray& stream, const std::vector<Title>& titles) {
    recorder.connectionBegan();
    qint64 fed = 0;
    for (const Title& next : titles) {
        feedPart(stream.mid(static_cast<int>(fed), static_cast<int>(next.position - fed)));
        title(next.text, next.position);
        fed = next.position;
    }
    feedPart(stream.mid(static_cast<int>(fed)));
    recorder.connectionEnded();
}

void RecorderRig::title(const QString& text, qint64 position) {
    BASS::Song song = BASS::songFromTrack(text);
    song.position = position;
    recorder.trackChanged(song);
}

void RecorderRig::stop() {
    recorder.stop();
    waitForEnd();
}

void RecorderRig::waitForEnd() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return !recorder.isRunning(); }, 20000));
}

QStringList RecorderRig::names() const {
    QStringList result;
    const QDir dir(options.folder);
    for (const BASS::RecordedFile& file : files)
        result << dir.relativeFilePath(file.path);
    return result;
}

QByteArray RecorderRig::joined() const {
    QByteArray result;
    for (const BASS::RecordedFile& file : files)
        result += fileBytes(file.path);
    return result;
}
