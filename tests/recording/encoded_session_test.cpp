#include "recording/c_encoder_params.h"
#include "recording/encoded_session.h"
#include "recording/encoder_output.h"
#include "support/media_tools.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace BASS;

struct Kind {
    int encoder;
    const char* codec;
    const char* container;
    int noAudio; ///< the n-th part of what is needed to tell that there is audio: holds none
};

constexpr Kind kKinds[] = {{EncoderMp3, "libmp3lame", "mp3", 8},
                           {EncoderWma, "wmav2", "asf", 1},
                           {EncoderOgg, "libvorbis", "ogg", 1},
                           {EncoderFlac, "flac", "flac", 2},
                           {EncoderAac, "aac", "adts", 8},
                           {EncoderAac, "aac", "mp4", 1},
                           {EncoderFlacOgg, "flac", "ogg", 1}};

QByteArray encoded(const Kind& kind) {
    const QStringList options{QStringLiteral("-c:a"), QLatin1String(kind.codec)};
    const QString container = QLatin1String(kind.container);
    if (container == QLatin1String("mp4"))
        return media::encodeTone({440,
                                  2,
                                  options + QStringList{QStringLiteral("-movflags"),
                                                        QStringLiteral("empty_moov+frag_keyframe")},
                                  container,
                                  {}});
    return media::encodeTone({440, 2, options, container, {}});
}

/// Bytes at the beginning that are no audio yet.
int headerBytes(int encoder, const QByteArray& file) {
    int size = 0;
    while (size < file.size() &&
           encoderOutput(encoder, file.left(size), false) == EncoderOutput::Header)
        ++size;
    return size;
}

bool plays(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
           !media::decodedMono(path, 44100).value_or(QByteArray()).isEmpty();
}

struct Teller final : RecordingListener {
    void fileOpened(const QString& path, const Song&) override { opened << path; }
    void fileFinished(const RecordedFile& file) override { finished.push_back(file); }
    void logChanged(const SessionLog& log) override { newest = log; }
    void titleRecorded(const SessionLog::Track& track) override { titles << track.song.track; }
    void failed(const RecordingError&) override { ++failures; }

    QStringList opened;
    std::vector<RecordedFile> finished;
    SessionLog newest;
    QStringList titles;
    int failures = 0;
};

Song named(const char* track) {
    Song song;
    song.track = QLatin1String(track);
    return song;
}

struct Rig {
    explicit Rig(int encoder) {
        options.folder = folder.path();
        options.encoder = encoder;
        options.patternSplit = QStringLiteral("%track%");
        options.hasTrackList = true;
    }
    [[nodiscard]] QStringList files() const { return QDir(folder.path()).entryList(QDir::Files); }

    QTemporaryDir folder;
    RecordingOptions options;
    SystemClock clock;
    Teller teller;
};

} // namespace

TEST(EncoderOutput, IsAudioAsSoonAsItPlays) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("begin"));
    for (const Kind& kind : kKinds) {
        SCOPED_TRACE(kind.container);
        const QByteArray file = encoded(kind);
        const int header = headerBytes(kind.encoder, file);
        ASSERT_LT(header, file.size());
        EXPECT_TRUE(plays(path, file.left(header))) << header;
        EXPECT_EQ(encoderOutput(kind.encoder, file.left((header - 1) / kind.noAudio), true),
                  EncoderOutput::Header);
        for (const char* const rubbish : {"Usage: lame [options]", "RIFF\x10\0\0\0", "\xFF"})
            EXPECT_EQ(encoderOutput(kind.encoder, rubbish, true), EncoderOutput::Foreign);
    }
}

TEST(EncodedSession, FilesBeginWithTheirFirstAudio) {
    for (const Kind& kind : kKinds) {
        SCOPED_TRACE(kind.container);
        const QByteArray file = encoded(kind);
        const int header = headerBytes(kind.encoder, file);
        Rig rig(kind.encoder);
        EncodedSession session(rig.options, rig.clock, rig.teller);
        session.append(1, file.left(20) + '?');
        session.beginFile(1, named("A - First name"));
        session.append(1, file.mid(21, header - 22));
        session.noteTitle(named("A - Inside"), 0.5);
        session.connectionLost();
        session.connectionBack();
        EXPECT_EQ(rig.files(), QStringList());
        session.beginFile(1, named("A - Name"));
        session.rewrite(1, 20, file.mid(20, 1));
        session.append(1, file.mid(header - 1));
        ASSERT_EQ(rig.teller.opened.size(), 1);
        const QString path = rig.teller.opened.first();
        EXPECT_TRUE(path.contains(QLatin1String("A - Name"))) << path.toStdString();
        EXPECT_EQ(rig.teller.titles,
                  QStringList({QStringLiteral("A - Name"), QStringLiteral("A - Inside")}));
        session.endFile(1, false);
        ASSERT_EQ(rig.teller.finished.size(), 1U);
        QFile written(path);
        ASSERT_TRUE(written.open(QIODevice::ReadOnly));
        EXPECT_EQ(written.readAll(), file);
        ASSERT_EQ(rig.teller.newest.tracks.size(), 2);
        EXPECT_EQ(rig.teller.newest.tracks.last().path, path);
        ASSERT_EQ(rig.teller.newest.gaps.size(), 1);
        EXPECT_EQ(rig.teller.newest.gaps.last().path, path);
        EXPECT_EQ(rig.teller.newest.gaps.last().at.count(), 0);
    }
}

TEST(EncodedSession, HeadersAloneMakeNoFileAndTheShortestSongDoes) {
    for (const Kind& kind : kKinds) {
        SCOPED_TRACE(kind.container);
        const QByteArray file = encoded(kind);
        const int header = headerBytes(kind.encoder, file);
        Rig rig(kind.encoder);
        EncodedSession session(rig.options, rig.clock, rig.teller);
        session.beginFile(1, named("A - Nothing"));
        session.append(1, file.left((header - 1) / kind.noAudio));
        session.endFile(1, false);
        EXPECT_EQ(rig.files(), QStringList());
        session.beginFile(2, named("A - Short"));
        session.append(2, file.left(header));
        session.close();
        EXPECT_EQ(rig.files().size(), 1);
        EXPECT_EQ(rig.teller.failures, 0);
    }
}

TEST(EncodedSession, OverwritingReplacesNoFileOfItsOwn) {
    Rig rig(EncoderMp3);
    rig.options.overwrite = true;
    EncodedSession session(rig.options, rig.clock, rig.teller);
    const QByteArray good = encoded(kKinds[0]);
    for (const quint32 encoder : {1U, 2U}) {
        session.beginFile(encoder, named("A - Part"));
        session.append(encoder, good);
        session.endFile(encoder, false);
    }
    EXPECT_EQ(rig.files().size(), 2);
}

/// A cut that is waited for: the gap lies in the file that goes on over it.
TEST(EncodedSession, AGapBelongsToTheFileThatIsOpen) {
    Rig rig(EncoderMp3);
    EncodedSession session(rig.options, rig.clock, rig.teller);
    const QByteArray good = encoded(kKinds[0]);
    session.beginFile(1, named("A - Open"));
    session.append(1, good);
    session.tellSeconds(1, 10);
    session.beginFile(2, named("A - Coming"));
    session.connectionLost();
    session.connectionBack();
    ASSERT_EQ(rig.teller.newest.gaps.size(), 1);
    EXPECT_EQ(rig.teller.newest.gaps[0].path, rig.teller.opened.first());
    EXPECT_EQ(rig.teller.newest.gaps[0].at.count(), 10000);
}

TEST(EncodedSession, RubbishEndsTheRecordingAndKeepsWhatWasThere) {
    Rig rig(EncoderMp3);
    EncodedSession session(rig.options, rig.clock, rig.teller);
    const QByteArray good = encoded(kKinds[0]);
    session.beginFile(1, named("A - Good"));
    session.append(1, good);
    session.beginFile(2, named("A - Bad"));
    session.append(2, "Usage: lame [options]");
    EXPECT_TRUE(session.isOver());
    EXPECT_EQ(rig.teller.failures, 1);
    ASSERT_EQ(rig.teller.finished.size(), 1U);
    EXPECT_EQ(rig.teller.finished.front().bytes, good.size());
    EXPECT_EQ(rig.files().size(), 1);
}
