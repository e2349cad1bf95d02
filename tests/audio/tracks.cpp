#include "audio/tracks.h"

#include "support/tool_run.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>

namespace {

QTemporaryDir& folder() {
    static QTemporaryDir dir;
    return dir;
}

QStringList encoderArguments(Track which) {
    const auto list = [](const char* text) {
        return QString::fromLatin1(text).split(QLatin1Char(' '));
    };
    switch (which) {
    case Track::Mp3:
        return list("-c:a libmp3lame -b:a 128k -f mp3");
    case Track::Mp3Joint:
        return list("-c:a libmp3lame -b:a 64k -id3v2_version 0 -write_xing 0 -f mp3");
    case Track::Mp2:
        return list("-c:a mp2 -b:a 192k -f mp2");
    case Track::Adts:
        return list("-c:a aac -aac_pns 0 -b:a 96k -f adts");
    case Track::Vorbis:
        return list("-c:a libvorbis -q:a 3 -page_duration 100000 -f ogg");
    case Track::Opus:
        return list("-c:a libopus -b:a 96k -page_duration 100000 -f ogg");
    case Track::OggFlac:
        return list("-c:a flac -page_duration 100000 -f ogg");
    case Track::Flac:
        return list("-c:a flac -f flac");
    case Track::M4a:
        return list("-c:a aac -aac_pns 0 -movflags +faststart -f ipod");
    case Track::M4aIndexLast:
        return list("-c:a aac -aac_pns 0 -f ipod");
    case Track::Wma:
        return list("-c:a wmav2 -b:a 128k -f asf");
    case Track::Wav:
        return list("-c:a pcm_s16le -f wav");
    case Track::Aiff:
        return list("-c:a pcm_s16be -f aiff");
    case Track::Mono:
        return list("-ac 1 -c:a libmp3lame -b:a 64k -f mp3");
    }
    return {};
}

void run(const QStringList& arguments) {
    const ToolOutput ffmpeg = runTool(QStringLiteral("ffmpeg"), arguments);
    EXPECT_TRUE(ffmpeg.isOk) << ffmpeg.err.constData();
}

} // namespace

QString trackPath(Track which, const char* title) {
    const QString path = folder().filePath(
        QStringLiteral("%1-%2").arg(static_cast<int>(which)).arg(QString::fromLatin1(title)));
    if (QFile::exists(path))
        return path;
    QStringList arguments{QStringLiteral("-v"),
                          QStringLiteral("error"),
                          QStringLiteral("-y"),
                          QStringLiteral("-f"),
                          QStringLiteral("lavfi"),
                          QStringLiteral("-i")};
    arguments << QStringLiteral("aevalsrc='0.3*sin(2*PI*t*(300+80*t))|0.3*sin(2*PI*t*(500+50*t))"
                                "':s=44100:d=%1")
                     .arg(kTrackSeconds);
    arguments << QStringLiteral("-bitexact") << QStringLiteral("-metadata")
              << QStringLiteral("title=") + QString::fromLatin1(title);
    run(arguments + encoderArguments(which) + QStringList{path});
    return path;
}

const QByteArray& track(Track which, const char* title) {
    static std::map<QString, QByteArray> cache;
    const QString path = trackPath(which, title);
    auto place = cache.find(path);
    if (place == cache.end()) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        place = cache.emplace(path, file.readAll()).first;
    }
    return place->second;
}

QByteArray decodedByFfmpeg(const QString& path) {
    const QString out = path + QStringLiteral(".f32");
    run({QStringLiteral("-v"),
         QStringLiteral("error"),
         QStringLiteral("-y"),
         QStringLiteral("-i"),
         path,
         QStringLiteral("-ac"),
         QStringLiteral("2"),
         QStringLiteral("-ar"),
         QStringLiteral("44100"),
         QStringLiteral("-f"),
         QStringLiteral("f32le"),
         out});
    QFile file(out);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}
