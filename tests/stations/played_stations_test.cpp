#include "stations/played_stations.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

using BASS::PlayedStations;
using BASS::StationRecord;

namespace {

StationRecord station(const QString& url, const QString& id = {}) {
    StationRecord record = BASS::stationFromAddress(url, QStringLiteral("Name of ") + url);
    record.stationId = id;
    return record;
}

QStringList list(std::initializer_list<const char*> texts) {
    QStringList result;
    for (const char* text : texts)
        result.append(QString::fromUtf8(text));
    return result;
}

QStringList urls(const PlayedStations& played) {
    QStringList result;
    for (const StationRecord& record : played.stations())
        result.append(record.playUrl());
    return result;
}

class PlayedTest : public ::testing::Test {
  protected:
    /// The list as the next run finds it.
    std::unique_ptr<PlayedStations> next() {
        auto played = std::make_unique<PlayedStations>(path);
        const Status loaded = played->load();
        message = loaded ? QString() : loaded.error();
        return played;
    }
    void write(const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("played.json"));
    QString message;
};

} // namespace

TEST_F(PlayedTest, OneEntryForEachStationTheLatestInFront) {
    PlayedStations played(path);
    for (const StationRecord& record : {station(QStringLiteral("http://a/")),
                                        station(QStringLiteral("http://b/")),
                                        station(QStringLiteral("http://a/"), QStringLiteral("7")),
                                        station(QStringLiteral("http://c/"), QStringLiteral("7")),
                                        station(QStringLiteral("http://c/"), QStringLiteral("8")),
                                        station(QStringLiteral(""))})
        played.add(record);
    // a gets its id, then the id its new address; another id is another station
    EXPECT_EQ(urls(played), list({"http://c/", "http://c/", "http://b/"}));
    EXPECT_EQ(played.indexOf(station(QStringLiteral("http://b/"), QStringLiteral("9"))), 2);
    EXPECT_EQ(played.indexOf(station(QStringLiteral("http://d/"))), -1);
    played.remove(1);
    played.remove(5);
    played.remove(-1);
    EXPECT_EQ(urls(played), list({"http://c/", "http://b/"}));
}

TEST_F(PlayedTest, InstancesShareTheFileWithoutLosingEachOthersStations) {
    {
        auto first = next();
        auto second = next();
        first->add(station(QStringLiteral("http://a/")));
        first.reset(); // written
        second->add(station(QStringLiteral("http://b/")));
        second->add(station(QStringLiteral("http://c/")));
        QSignalSpy changed(second.get(), &PlayedStations::sig_changed);
        while (urls(*second).size() < 3)
            ASSERT_TRUE(changed.wait());
        EXPECT_EQ(urls(*second), list({"http://c/", "http://b/", "http://a/"}));
        auto third = next();
        second->remove(1);
        second.reset();
        third->add(station(QStringLiteral("http://d/")));
    }
    EXPECT_EQ(urls(*next()), list({"http://d/", "http://c/", "http://a/"}));
}

TEST_F(PlayedTest, EverythingKnownIsThereInTheNextRun) {
    StationRecord full =
        station(QStringLiteral("http://user:pass@a/äöü?x=\"1\""), QStringLiteral("id"));
    full.streams.append({QStringLiteral("http://second/"), 2});
    full.currentUrl = full.streams.last().url;
    full.genre = QStringLiteral("Jazz \\ Blues\n");
    full.bitrate = 320;
    full.splitDelayMs = 1500;
    full.lastPlayed = QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 589), Qt::UTC);
    {
        PlayedStations played(path);
        played.add(station(QStringLiteral("http://old/")));
        played.add(full);
    }
    const auto played = next();
    ASSERT_EQ(played->stations().size(), 2);
    const StationRecord& read = played->stations().first();
    EXPECT_EQ(read.name, full.name);
    EXPECT_EQ(read.stationId, full.stationId);
    EXPECT_EQ(read.playUrl(), QStringLiteral("http://second/"));
    ASSERT_EQ(read.streams.size(), 2);
    EXPECT_EQ(read.streams.first().url, full.streams.first().url);
    EXPECT_EQ(read.genre, full.genre);
    EXPECT_EQ(read.bitrate, 320);
    EXPECT_EQ(read.splitDelayMs, 1500U);
    EXPECT_EQ(read.lastPlayed, full.lastPlayed);
}

TEST_F(PlayedTest, ADamagedFileIsSetAsideAndNothingOfItIsLost) {
    const QByteArray damaged[] = {"{\"version\":1,\"stations\":[{\"name\":\"Ha",
                                  "\x00\xff\x17",
                                  "[]",
                                  "{\"stations\":7}",
                                  ""};
    for (const QByteArray& bytes : damaged) {
        SCOPED_TRACE(bytes.constData());
        write(bytes);
        const int before = QDir(folder.path()).entryList(QDir::Files).size();
        next()->add(station(QStringLiteral("http://new/")));
        EXPECT_FALSE(message.isEmpty());
        const QStringList files = QDir(folder.path()).entryList(QDir::Files, QDir::Time);
        EXPECT_EQ(files.size(), before + 1);
        bool isKept = false;
        for (const QString& name : files) {
            QFile file(folder.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            isKept = isKept || file.readAll() == bytes;
        }
        EXPECT_TRUE(isKept);
        EXPECT_EQ(urls(*next()), list({"http://new/"}));
        EXPECT_TRUE(message.isEmpty());
    }
}

TEST_F(PlayedTest, OddEntriesAreLeftOutAndTheListIsBounded) {
    write(R"({"stations":[7,{"name":"no address"},{"streams":["http://a/",5],"bitrate":"x",
             "split_delay_ms":-4}]})");
    {
        const auto played = next();
        ASSERT_EQ(urls(*played), list({"http://a/"}));
        EXPECT_EQ(played->stations().first().bitrate, 0);
        EXPECT_EQ(played->stations().first().splitDelayMs, 0U);
        for (int n = 0; n < BASS::kMaxPlayedStations + 5; ++n)
            played->add(station(QStringLiteral("http://%1/").arg(n)));
        EXPECT_EQ(played->stations().size(), BASS::kMaxPlayedStations);
    }
    EXPECT_EQ(next()->stations().size(), BASS::kMaxPlayedStations);
}

TEST_F(PlayedTest, AFolderThatCannotBeWrittenIsReported) {
    PlayedStations played(folder.filePath(QStringLiteral("missing/played.json")));
    QSignalSpy failed(&played, &PlayedStations::sig_saveFailed);
    played.add(station(QStringLiteral("http://a/")));
    EXPECT_TRUE(failed.count() > 0 || failed.wait());
    EXPECT_EQ(played.stations().size(), 1);
}
