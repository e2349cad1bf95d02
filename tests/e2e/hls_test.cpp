#include "e2e/program_run.h"
#include "support/hls_station.h"
#include "support/media_tools.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace std::chrono_literals;

namespace {

const QStringList kAac{
    QStringLiteral("-c:a"), QStringLiteral("aac"), QStringLiteral("-b:a"), QStringLiteral("96k")};
constexpr double kSeconds = 16.0;

QByteArray song(int piece) {
    return "Song " + QByteArray::number(piece / 2 + 1); // of two pieces each
}

/// Titles in the playlist.
QVector<HlsPiece> announced(QVector<HlsPiece> pieces) {
    for (int n = 0; n < pieces.size(); ++n)
        pieces[n].info = "Artist - " + song(n);
    return pieces;
}

/// Titles in the segments.
QVector<HlsPiece> tagged() {
    const QByteArray audio = media::encodeTone({440, kSeconds, kAac, QStringLiteral("adts"), {}});
    QList<QByteArray> titles;
    for (int n = 0; n < 8; ++n)
        titles.append(song(n));
    return packedPieces(audio, titles);
}

QByteArray recordedStream(const QStringList& files) {
    QByteArray all;
    for (const QString& path : files) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        all += media::withoutId3(file.readAll());
    }
    return all;
}

} // namespace

/// A live station of segments is played and split by its titles into files without a fault.
TEST(Hls, LiveStationsAreSplitByTheirTitles) {
    const struct {
        const char* what;
        QVector<HlsPiece> pieces;
        const char* path;
        const char* suffix;
    } cases[] = {
        {"transport streams",
         announced(hlsPieces(kAac, QStringLiteral("mpegts"), kSeconds)),
         "/live.m3u8",
         "m4a"},
        {"packed audio behind a master playlist", tagged(), "/master.m3u8", "aac"},
        {"fragments",
         announced(hlsPieces(kAac, QStringLiteral("fmp4"), kSeconds)),
         "/live.m3u8",
         "m4a"},
    };
    struct Run {
        explicit Run(const HlsScript& script) : station(script) {}
        HlsStation station;
        ProgramRun program;
    };
    std::vector<std::unique_ptr<Run>> runs;
    for (const auto& c : cases) {
        HlsScript script;
        script.pieces = c.pieces;
        script.isLive = true;
        Run& run = *runs.emplace_back(std::make_unique<Run>(script));
        const bool isM4a = QByteArray(c.suffix) == "m4a";
        run.program.setSetting(QStringLiteral("UseM4AForAAC"),
                               isM4a ? QStringLiteral("true") : QStringLiteral("false"));
        run.program.start({QStringLiteral("/url=") + run.station.url(QString::fromLatin1(c.path)),
                           QStringLiteral("/name=Segments"),
                           QStringLiteral("/action=Record (Split)"),
                           QStringLiteral("/duration=10"),
                           QStringLiteral("/end_action=1")});
    }
    auto next = runs.begin();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ProgramRun& program = (*next++)->program;
        ASSERT_TRUE(program.waitForEnd(60s)) << program.output().toStdString();
        EXPECT_EQ(program.exitCode(), 0);
        const QStringList files = program.recordings();
        ASSERT_GE(files.size(), 3) << program.output().toStdString();
        for (const QString& path : files) {
            const QFileInfo info(path);
            EXPECT_TRUE(info.fileName().startsWith(QStringLiteral("Artist - Song ")))
                << path.toStdString();
            EXPECT_EQ(info.suffix(), QLatin1String(c.suffix));
            EXPECT_EQ(media::decodeErrors(path), QString()) << path.toStdString();
            EXPECT_EQ(media::probe(path, QStringLiteral("stream=codec_name")),
                      QStringLiteral("aac"));
        }
        // a whole title between two cuts
        EXPECT_NEAR(media::decodedSeconds(files.at(1)), 4.0, 0.1);
    }
    // what packed segments hold is known without taking anything apart
    const QVector<HlsPiece> pieces = cases[1].pieces;
    QByteArray served;
    for (int round = 0; round < 3; ++round) {
        for (int n = 0; n < pieces.size(); ++n)
            served += media::withoutId3(pieces[n].bytes);
    }
    const QByteArray recorded = recordedStream(runs[1]->program.recordings());
    EXPECT_GT(recorded.size(), pieces[0].bytes.size() * 4);
    EXPECT_TRUE(served.contains(recorded)); // nothing lost, nothing doubled, over all the cuts
}
