#pragma once

#include "audio/provider_loader.h"
#include "engine/app_stream.h"
#include "support/media_tools.h"
#include "support/test_station.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

constexpr int kLimitMs = 30000;
constexpr int kBytesPerSecond = 16000;

/// MP3 tracks of 128 kbit/s; the n-th is a tone of n times 400 Hz.
inline QVector<StationTrack> tones(int count, double seconds, int sampleRate = 44100) {
    QVector<StationTrack> tracks;
    for (int n = 1; n <= count; ++n)
        tracks.append({media::encodeTone({400 * n,
                                          seconds,
                                          {QStringLiteral("-c:a"),
                                           QStringLiteral("libmp3lame"),
                                           QStringLiteral("-b:a"),
                                           QStringLiteral("128k")},
                                          QStringLiteral("mp3"),
                                          {},
                                          sampleRate}),
                       QByteArray("Artist - Song ") + QByteArray::number(n)});
    return tracks;
}

/// An engine without a sound card, a station of tones, and a recording folder.
class Rig {
  public:
    explicit Rig(int trackCount = 3, double seconds = 4, int sampleRate = 44100) {
        script.tracks = tones(trackCount, seconds, sampleRate);
        script.isLooped = true;
        script.metaint = 1024;
        script.speed = 1;
        script.burst = 4 * kBytesPerSecond;
        script.bytesPerSecond = kBytesPerSecond;
        script.contentType = "audio/mpeg";
        m_station.setScript(script);
        EXPECT_TRUE(m_station.listen());
        auto library = BASS::loadAudioProvider(QStringLiteral("wavelark_ffmpeg"),
                                               BASS::audioProviderFolders());
        EXPECT_TRUE(library.isOk());
        engine = std::make_unique<AppStream>(library.value());
        EngineSettings settings;
        settings.outputDevice = 0;
        settings.fadeOut = {};
        engine->setSettings(settings);
        options.folder = folder.path();
        options.patternSplit = QStringLiteral("%track_or_title%");
        options.patternNoSplit = QStringLiteral("%title%");
        options.station.station = QStringLiteral("Tones");
        options.encodingBitrate = 128;
        const BASS::StreamRecorder& recorder = engine->recorder();
        using Recorder = BASS::StreamRecorder;
        QObject::connect(&recorder,
                         &Recorder::sig_fileFinished,
                         &recorder,
                         [this](const auto& file) { files.push_back(file); });
        QObject::connect(&recorder, &Recorder::sig_failed, &recorder, [this](const auto& error) {
            errors.push_back(error);
        });
    }

    void play(unsigned splitDelayMs = 0) {
        BASS::StationRecord record = BASS::stationFromAddress(m_station.url());
        record.splitDelayMs = splitDelayMs;
        engine->play(record);
        ASSERT_TRUE(QTest::qWaitFor([this] { return engine->playState() == PlayState::Playing; },
                                    kLimitMs));
    }
    void waitForFiles(std::size_t count) {
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return files.size() >= count || !errors.empty(); }, kLimitMs));
    }
    void waitForEnd() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !engine->isRecording(); }, kLimitMs));
    }

    StationScript script;
    TestStation m_station;
    QTemporaryDir folder;
    BASS::RecordingOptions options;
    std::vector<BASS::RecordedFile> files;
    std::vector<BASS::RecordingError> errors;
    std::unique_ptr<AppStream> engine;
};
