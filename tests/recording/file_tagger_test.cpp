#include "recording/audio_tools.h"
#include "recording/file_tagger.h"
#include "recording/recorder_rig.h"
#include "support/tool_run.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

BASS::FileTags someTags() {
    BASS::FileTags tags;
    tags.artist = QStringLiteral("Bj\u00F6rk \u2013 \u043C\u0438\u0440");
    tags.title = QStringLiteral("J\u00F3ga");
    tags.album = QStringLiteral("Station \u266B");
    tags.comment = QStringLiteral("Recorded from http://host/a b");
    tags.recorded = QDateTime({2024, 2, 29}, {23, 59, 1});
    return tags;
}

/// All that ffprobe tells of tags, as "name=value" lines; Ogg keeps them with the stream.
QString probedTags(const QString& path) {
    const ToolOutput probe =
        runTool(QStringLiteral("ffprobe"),
                words("-v error -show_entries format_tags:stream_tags:stream=codec_name -of "
                      "default=nw=1") +
                    QStringList(path));
    EXPECT_EQ(probe.err.toStdString(), "");
    return QString::fromUtf8(probe.out);
}

QByteArray png() {
    return encoded(words(
        "-filter_complex color=red:s=16x16[out] -map [out] -frames:v 1 -f image2pipe -c:v png"));
}

} // namespace

TEST(FileTagger, EveryFormatReadsBackAndDecodesAsBefore) {
    const struct {
        const char* what;
        const char* encoder;
        const char* suffix;
        bool hasAlbum;
    } cases[] = {
        {"MP3", "-c:a libmp3lame -b:a 128k -write_xing 0 -id3v2_version 0 -f mp3", "mp3", true},
        {"ADTS", "-c:a aac -b:a 96k -f adts", "aac", true},
        {"Vorbis", "-c:a libvorbis -f ogg", "ogg", true},
        {"Opus", "-ar 48000 -c:a libopus -f ogg", "opus", true},
        {"FLAC in Ogg", "-c:a flac -f ogg", "oga", true},
        {"FLAC", "-c:a flac -f flac", "flac", true},
        {"MP4", "-c:a aac -movflags frag_keyframe+empty_moov -f mp4", "m4a", true},
        {"ASF", "-c:a wmav2 -f asf", "wma", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const QByteArray audio = encoded(words(c.encoder));
        const QString path = fileWith(audio, QString::fromLatin1(c.suffix));
        const Decoded before = decodedByFfmpeg(path);
        const BASS::FileTags tags = someTags();
        const Status status = BASS::tagFile(path, tags);
        ASSERT_TRUE(status.isOk()) << qPrintable(status.error());
        const QString read = probedTags(path);
        for (const QString& value : {tags.artist, tags.title, tags.album, tags.comment})
            EXPECT_TRUE(read.contains(value)) << qPrintable(value) << "\n" << qPrintable(read);
        EXPECT_TRUE(read.contains(QStringLiteral("2024"))) << qPrintable(read);
        const Decoded after = decodedByFfmpeg(path);
        EXPECT_EQ(after.messages.toStdString(), "");
        EXPECT_TRUE(after.samples == before.samples);
        EXPECT_FALSE(QFileInfo::exists(path + QStringLiteral(".tagging")));
    }
}

TEST(FileTagger, MpegAndAdtsBytesStayBehindTheTag) {
    for (const char* encoder :
         {"-c:a libmp3lame -write_xing 0 -id3v2_version 0 -f mp3", "-c:a aac -f adts"}) {
        const QByteArray audio = encoded(words(encoder));
        const QString path = fileWith(audio, QStringLiteral("mp3"));
        ASSERT_TRUE(BASS::tagFile(path, someTags()).isOk());
        const QByteArray tagged = fileBytes(path);
        EXPECT_TRUE(tagged.startsWith(QByteArray("ID3\x04", 4)));
        EXPECT_TRUE(tagged.endsWith(audio));
        // a second time must not put another tag in front
        ASSERT_TRUE(BASS::tagFile(path, someTags()).isOk());
        EXPECT_TRUE(fileBytes(path) == tagged);
    }
    const QString path = fileWith(lameEncoded(words("-b 128")), QStringLiteral("mp3"));
    ASSERT_TRUE(BASS::tagFile(path, someTags()).isOk());
    EXPECT_EQ(decodedByMpg123(path).messages.toStdString(), "");
}

TEST(FileTagger, OggFilesOfSeveralLinksStayWhole) {
    for (const char* encoder :
         {"-c:a libvorbis -f ogg", "-ar 48000 -c:a libopus -f ogg", "-c:a flac -f ogg"}) {
        SCOPED_TRACE(encoder);
        const QByteArray link = encoded(words(encoder), {12, 44100, 2, 700});
        const QString path = fileWith(encoded(words(encoder)) + link, QStringLiteral("ogg"));
        const Decoded before = decodedByFfmpeg(path);
        BASS::FileTags tags = someTags();
        tags.cover = png().repeated(200); // moves every page, and takes more than one of its own
        ASSERT_TRUE(BASS::tagFile(path, tags).isOk());
        EXPECT_TRUE(fileBytes(path).endsWith(link.right(20000)));
        EXPECT_TRUE(decodedByFfmpeg(path).samples == before.samples);
    }
}

TEST(FileTagger, CoverIsFoundInTheFile) {
    const QByteArray picture = png();
    ASSERT_TRUE(picture.startsWith("\x89PNG"));
    const char* const encoders[][2] = {
        {"-c:a libmp3lame -f mp3 -write_xing 0 -id3v2_version 0", "mp3"},
        {"-c:a flac -f flac", "flac"},
        {"-c:a libvorbis -f ogg", "ogg"},
        {"-c:a aac -movflags frag_keyframe+empty_moov -f mp4", "m4a"}};
    for (const auto& encoder : encoders) {
        SCOPED_TRACE(encoder[1]);
        BASS::FileTags tags = someTags();
        tags.cover = picture;
        const QString path = fileWith(encoded(words(encoder[0])), QString::fromLatin1(encoder[1]));
        ASSERT_TRUE(BASS::tagFile(path, tags).isOk());
        EXPECT_TRUE(probedTags(path).contains(QStringLiteral("codec_name=png")));
        EXPECT_EQ(decodedByFfmpeg(path).messages.toStdString(), "");
    }
}

TEST(FileTagger, FilesItCannotTagStayAsTheyAre) {
    const QByteArray text = QByteArray("neither frames nor pages ").repeated(5000);
    const QByteArray cut =
        encoded(words("-c:a aac -movflags frag_keyframe+empty_moov -f mp4")).left(100);
    const QByteArray page = encoded(words("-c:a libvorbis -f ogg")).left(60);
    for (const QByteArray& bytes : {text, cut, page, QByteArray()}) {
        const QString path = fileWith(bytes, QStringLiteral("bin"));
        const Status status = BASS::tagFile(path, someTags());
        EXPECT_TRUE(fileBytes(path) == bytes) << bytes.size() << status.isOk();
        EXPECT_FALSE(QFileInfo::exists(path + QStringLiteral(".tagging")));
    }
    EXPECT_FALSE(BASS::tagFile(QStringLiteral("/nowhere/at all.mp3"), someTags()).isOk());
}

TEST(FileTagger, OldLeftoversGoAndFreshOnesStay) {
    const QTemporaryDir folder;
    const auto make = [&](const char* name, int ageSeconds) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.setFileTime(QDateTime::currentDateTime().addSecs(-ageSeconds),
                         QFileDevice::FileModificationTime);
    };
    make("old.mp3.tagging", 7200);
    make("fresh.mp3.tagging", 5);
    make("old.mp3", 7200);
    BASS::removeTagLeftovers(folder.path());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files),
              (QStringList{QStringLiteral("fresh.mp3.tagging"), QStringLiteral("old.mp3")}));
}

TEST(FileTagger, RecorderTagsItsFilesBeforeItTellsThem) {
    const QByteArray stream = encoded(words("-c:a aac -b:a 96k -f adts"));
    RecorderRig rig;
    rig.options.hasTags = true;
    rig.options.address = QStringLiteral("http://host/live");
    rig.recorder.setCover(QStringLiteral("Me - Second"), png());
    rig.start(QStringLiteral("Me - First"));
    rig.feed(stream, {{60001, QStringLiteral("Me - Second")}});
    rig.stop();
    ASSERT_EQ(rig.files.size(), 2U);
    QByteArray all;
    for (const BASS::RecordedFile& file : rig.files) {
        EXPECT_EQ(file.bytes, QFileInfo(file.path).size());
        EXPECT_EQ(decodedByFfmpeg(file.path).messages.toStdString(), "");
        all += audioBytes(file.path);
    }
    EXPECT_TRUE(all == stream);
    const QString second = probedTags(rig.files[1].path);
    for (const char* part :
         {"artist=Me", "title=Second", "album=Station", "http://host/live", "codec_name=png"})
        EXPECT_TRUE(second.contains(QString::fromLatin1(part))) << part << qPrintable(second);
    EXPECT_FALSE(probedTags(rig.files[0].path).contains(QStringLiteral("png")));
}
