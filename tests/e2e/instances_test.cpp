#include "e2e/program_run.h"
#include "e2e/wait_until.h"
#include "support/media_tools.h"
#include "support/test_station.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using namespace std::chrono_literals;

namespace {

/// Instances meet by the program's path: a copy of its own keeps other tests' programs out.
class InstancesTest : public ::testing::Test {
  protected:
    void SetUp() override {
        program = copyOfProgram(folder.path());
        ASSERT_TRUE(QFileInfo::exists(program));

        StationScript script;
        script.tracks = {{media::encodeTone({440,
                                             20,
                                             {QStringLiteral("-c:a"),
                                              QStringLiteral("libmp3lame"),
                                              QStringLiteral("-b:a"),
                                              QStringLiteral("64k")},
                                             QStringLiteral("mp3"),
                                             {}}),
                          "A - B"}};
        script.bytesPerSecond = 8000;
        station.setScript(script);
        ASSERT_TRUE(station.listen());
    }

    std::unique_ptr<ProgramRun> firstStart(bool areMultipleAllowed) {
        auto run = std::make_unique<ProgramRun>();
        run->setProgram(program);
        run->setSetting(QStringLiteral("AllowMultipleInstances"),
                        areMultipleAllowed ? QStringLiteral("true") : QStringLiteral("false"));
        return run;
    }
    static bool isUp(ProgramRun& run) {
        return waitUntil([&run] { return run.log().contains(QStringLiteral("provider loaded")); });
    }
    QStringList record(int n) const {
        return {QStringLiteral("/url=") + station.url(QStringLiteral("/s%1").arg(n)),
                QStringLiteral("/name=Station %1").arg(n),
                QStringLiteral("/action=Record (Split)"),
                QStringLiteral("/duration=3"),
                QStringLiteral("/end_action=1")};
    }

    QTemporaryDir folder;
    QString program;
    TestStation station;
};

} // namespace

TEST_F(InstancesTest, ASecondStartActsInTheFirstAndAKilledFirstIsReplaced) {
    const auto killed = firstStart(false);
    killed->start({});
    ASSERT_TRUE(isUp(*killed));
    killed->kill();
    ASSERT_TRUE(QFile::remove(killed->dataFolder() + QStringLiteral("/Wavelark.log")));

    ProgramRun first(*killed);
    first.start({});
    ASSERT_TRUE(isUp(first)) << first.output().toStdString();
    ProgramRun second(first);
    second.start(record(1));
    ASSERT_TRUE(second.waitForEnd(20s));
    EXPECT_EQ(second.exitCode(), 0) << second.output().toStdString();

    // what the second asked for, the end after three seconds too, happens in the first
    ASSERT_TRUE(first.waitForEnd(40s)) << first.output().toStdString();
    EXPECT_EQ(first.exitCode(), 0);
    EXPECT_EQ(station.served().size(), 1);
    ASSERT_FALSE(first.recordings().isEmpty()) << first.output().toStdString();
    EXPECT_EQ(media::decodeErrors(first.recordings().first()), QString());
}

TEST_F(InstancesTest, OfFiftyStartsOneStaysAndHearsOfAllOthers) {
    constexpr int kStarts = 50;
    std::vector<std::unique_ptr<ProgramRun>> runs;
    runs.push_back(firstStart(false));
    for (int n = 1; n < kStarts; ++n)
        runs.push_back(std::make_unique<ProgramRun>(*runs.front()));
    for (int n = 0; n < kStarts; ++n)
        runs[static_cast<std::size_t>(n)]->start({QStringLiteral("/show=minimized-%1-").arg(n)});
    std::vector<ProgramRun*> alive;
    ASSERT_TRUE(waitUntil(
        [&] {
            alive.clear();
            for (const auto& run : runs)
                if (!run->waitForEnd(0s))
                    alive.push_back(run.get());
            return alive.size() <= 1;
        },
        120s))
        << alive.size() << " still run";
    ASSERT_EQ(alive.size(), 1U);
    for (const auto& run : runs) {
        if (run.get() == alive.front())
            continue;
        EXPECT_FALSE(run->isCrashed());
        EXPECT_EQ(run->exitCode(), 0) << run->output().toStdString();
    }
    EXPECT_TRUE(waitUntil([&] {
        return alive.front()->log().count(QStringLiteral("slot_receivedMessage")) == kStarts - 1;
    })) << alive.front()->log().toStdString();
    EXPECT_TRUE(alive.front()->askToEnd());
    EXPECT_TRUE(alive.front()->waitForEnd(20s));
    EXPECT_FALSE(alive.front()->isCrashed());
}

TEST_F(InstancesTest, FiveAtOnceDoNotTrampleEachOthersFiles) {
    constexpr int kStarts = 5;
    std::vector<std::unique_ptr<ProgramRun>> runs;
    runs.push_back(firstStart(true));
    for (int n = 1; n < kStarts; ++n)
        runs.push_back(std::make_unique<ProgramRun>(*runs.front()));
    for (int n = 0; n < kStarts; ++n)
        runs[static_cast<std::size_t>(n)]->start(record(n));
    for (const auto& run : runs) {
        ASSERT_TRUE(run->waitForEnd(60s));
        EXPECT_EQ(run->exitCode(), 0) << run->output().toStdString();
    }
    QFile list(runs.front()->dataFolder() + QStringLiteral("/played.json"));
    ASSERT_TRUE(list.open(QIODevice::ReadOnly));
    const QJsonObject played = QJsonDocument::fromJson(list.readAll()).object();
    EXPECT_EQ(played.value(QStringLiteral("stations")).toArray().size(), kStarts);
    const QStringList recordings = runs.front()->recordings();
    EXPECT_EQ(recordings.size(), kStarts);
    for (const QString& file : recordings)
        EXPECT_EQ(media::decodeErrors(file), QString()) << file.toStdString();
}

/// Whatever stands where the settings should be, the program runs, says so and plays.
TEST_F(InstancesTest, BadDataFoldersAndHugeArguments) {
    const auto garbage = firstStart(true);
    const QString settings = garbage->dataFolder() + QStringLiteral("/Brindlecove/Wavelark.ini");
    QByteArray noise;
    for (quint32 n = 1, state = 7; n < 50000; ++n) {
        state = state * 1664525U + 1013904223U;
        noise += static_cast<char>(state >> 24);
    }
    QFile file(settings);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(noise);
    file.close();

    ProgramRun noFolder;
    noFolder.setProgram(program);
    QFile obstacle(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    noFolder.setDataFolder(obstacle.fileName() + QStringLiteral("/data"));

    ProgramRun vanishing;
    vanishing.setProgram(program);
    QDir(folder.path()).mkpath(QStringLiteral("gone"));
    vanishing.setDataFolder(folder.filePath(QStringLiteral("gone")));

    ProgramRun huge;
    huge.setProgram(program);
    QStringList arguments = record(4);
    for (int n = 0; n < 10; ++n)
        arguments.append(QStringLiteral("/id=") + QString(100000, QLatin1Char('x')));

    garbage->start(record(1));
    noFolder.start(record(2));
    vanishing.start(record(3));
    huge.start(arguments);
    ASSERT_TRUE(isUp(vanishing));
    QDir(vanishing.dataFolder()).removeRecursively();
    for (ProgramRun* run : {garbage.get(), &noFolder, &vanishing, &huge}) {
        ASSERT_TRUE(run->waitForEnd(60s));
        EXPECT_FALSE(run->isCrashed());
        EXPECT_EQ(run->exitCode(), 0) << run->output().toStdString();
    }
    EXPECT_EQ(station.served().size(), 4);
    EXPECT_TRUE(garbage->output().contains(QStringLiteral("was damaged")))
        << garbage->output().toStdString();
    EXPECT_TRUE(noFolder.output().contains(QStringLiteral("Settings cannot be saved")) ||
                noFolder.output().contains(QStringLiteral("could not be saved")))
        << noFolder.output().toStdString();
    bool isKept = false;
    const QFileInfoList files = QFileInfo(settings).dir().entryInfoList(QDir::Files);
    for (const QFileInfo& kept : files) {
        QFile bytes(kept.filePath());
        isKept = isKept || (bytes.open(QIODevice::ReadOnly) && bytes.readAll() == noise);
    }
    EXPECT_TRUE(isKept);
    EXPECT_EQ(huge.recordings().size(), 1);
}
