#include "e2e/hostile_rows.h"
#include "e2e/program_run.h"
#include "support/media_tools.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

using namespace std::chrono_literals;

namespace {

/// Programs that run at the same time. Under Wine they start so slowly that stations time out.
#ifdef Q_OS_WIN
constexpr std::size_t kAtOnce = 5;
#else
constexpr std::size_t kAtOnce = 20;
#endif
constexpr std::chrono::seconds kLimit = 60s;

QByteArray streamBytes(const QStringList& files) {
    QByteArray all;
    for (const QString& path : files) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        all += path.endsWith(QLatin1String(".mp3"))
                   ? media::mp3StreamBytes(bytes, path != files.first())
                   : media::withoutId3(bytes);
    }
    return all;
}

struct Run {
    explicit Run(const HostileRow& what) : row(what) {
        station.setScript(row.script);
        EXPECT_TRUE(station.listen());
        // the served frames are looked for as they are
        program.setSetting(QStringLiteral("UseM4AForAAC"), QStringLiteral("false"));
        QStringList arguments{QStringLiteral("/url=") + station.url(QString::fromLatin1(row.path)),
                              QStringLiteral("/name=Hostile")};
        if (!row.titles.isEmpty())
            arguments += QStringLiteral("/action=Record (Split)");
        program.start(arguments);
    }

    void end() {
        EXPECT_TRUE(program.waitForOutput(QString::fromLatin1(row.said), kLimit));
        EXPECT_TRUE(program.askToEnd());
        ASSERT_TRUE(program.waitForEnd(kLimit));
        EXPECT_FALSE(program.isCrashed());
        EXPECT_EQ(program.exitCode(), 0);
        checkRecordings();
    }

    void checkRecordings() {
        const QStringList files = program.recordings();
        QStringList names;
        double seconds = 0.0;
        for (const QString& path : files) {
            const QString name = QFileInfo(path).completeBaseName();
            // without a title a file is called by its station and the time
            names.append(name.startsWith(QLatin1String("Hostile - ")) ? QStringLiteral("Hostile")
                                                                      : name);
            if (row.seconds > 0.0)
                seconds += media::decodedSeconds(path);
        }
        EXPECT_EQ(names.join(QLatin1Char('|')).toStdString(),
                  row.titles.join(QLatin1Char('|')).toStdString());
        constexpr double kPacket = 0.12; // what an encoder puts around the sound
        EXPECT_NEAR(seconds, row.seconds, kPacket * files.size());
        if (row.bytes.isEmpty())
            return;
        const QByteArray recorded = streamBytes(files);
        EXPECT_EQ(recorded.size(), row.bytes.size());
        EXPECT_TRUE(recorded == row.bytes);
    }

    const HostileRow& row;
    TestStation station;
    ProgramRun program;
};

void runAll(const std::vector<HostileRow>& rows) {
    for (std::size_t from = 0; from < rows.size(); from += kAtOnce) {
        const std::size_t to = std::min(rows.size(), from + kAtOnce);
        std::vector<std::unique_ptr<Run>> runs;
        for (std::size_t n = from; n < to; ++n)
            runs.push_back(std::make_unique<Run>(rows[n]));
        for (const auto& run : runs) {
            SCOPED_TRACE(run->row.what);
            const int before = ::testing::UnitTest::GetInstance()
                                   ->current_test_info()
                                   ->result()
                                   ->total_part_count();
            run->end();
            if (::testing::UnitTest::GetInstance()
                    ->current_test_info()
                    ->result()
                    ->total_part_count() > before)
                ADD_FAILURE() << run->program.output().toStdString();
        }
    }
}

} // namespace

TEST(Hostile, AnswersOfEveryKindEndInOrder) {
    runAll(hostileAnswers());
}

TEST(Hostile, AudioOfEveryKindEndsInOrder) {
    runAll(hostileAudio());
}

TEST(Hostile, PlaylistsOfEveryKindEndInOrder) {
    runAll(hostilePlaylists());
}
