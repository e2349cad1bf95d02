#include "app/process_fixture.h"
#include "app/settings_fixture.h"

#include <QSettings>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

namespace {
/// The look at the file comes twice a second.
bool waitForValue(const IntSetting& setting, int value) {
    return waitFor([&] { return setting() == value; });
}
} // namespace

TEST_F(SettingsTest, GarbageIsSetAsideByteForByteAndNamed) {
    QByteArray garbage = QByteArray::fromHex("00ff10fe5b47656e5d0d0a");
    garbage += QByteArray(1000, '\x01');
    writeIni(garbage);
    AppSettings settings(folder());
    EXPECT_EQ(settings.Volume(), 20);
    ASSERT_EQ(setAsideFiles().size(), 1);
    const QString aside = m_dir.filePath(QStringLiteral("Brindlecove/") + setAsideFiles().first());
    EXPECT_EQ(readFile(aside), garbage);
    const QStringList messages = settings.takeMessages();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().contains(setAsideFiles().first()));
    EXPECT_TRUE(settings.takeMessages().isEmpty());

    settings.Volume.set(33);
    ASSERT_TRUE(settings.flush());
    EXPECT_EQ(AppSettings(folder()).Volume(), 33);
    EXPECT_EQ(readFile(aside), garbage);
}

TEST_F(SettingsTest, ATornFileKeepsWhatCanBeRead) {
    writeIni("[General]\nVolume=55\nUserAgent=Me\nLangu");
    const AppSettings settings(folder());
    EXPECT_EQ(settings.Volume(), 55);
    EXPECT_EQ(settings.UserAgent(), QStringLiteral("Me"));
    EXPECT_EQ(setAsideFiles().size(), 1);
    EXPECT_TRUE(readIni().contains("Volume=55"));
}

TEST_F(SettingsTest, DamageWhileRunningLosesNoSetting) {
    AppSettings settings(folder());
    settings.Volume.set(44);
    settings.Retries.set(9);
    ASSERT_TRUE(settings.flush());
    writeIni(QByteArray(500, '\x02'));
    settings.MaxHistoryLength.set(7);
    ASSERT_TRUE(settings.flush());
    EXPECT_EQ(setAsideFiles().size(), 1);
    const AppSettings again(folder());
    EXPECT_EQ(again.Volume(), 44);
    EXPECT_EQ(again.Retries(), 9);
    EXPECT_EQ(again.MaxHistoryLength(), 7);
}

TEST_F(SettingsTest, AFolderThatCannotBeWrittenGivesOneMessageAndWorksInMemory) {
    QFile inTheWay(m_dir.filePath(QStringLiteral("Brindlecove")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    AppSettings settings(folder());
    QSignalSpy told(&settings, &AppSettings::sig_messageAdded);
    settings.Volume.set(70);
    settings.Retries.set(8);
    EXPECT_FALSE(settings.flush(std::chrono::milliseconds(200)));
    settings.MaxBuffer.set(9);
    EXPECT_FALSE(settings.flush(std::chrono::milliseconds(200)));
    EXPECT_EQ(settings.Volume(), 70);
    EXPECT_EQ(settings.Retries(), 8);
    EXPECT_EQ(settings.takeMessages().size(), 1);
    EXPECT_TRUE(waitFor([&] { return told.size() == 1; }));
}

TEST_F(SettingsTest, ChangesFromOutsideAreNoticed) {
    AppSettings settings(folder());
    settings.Volume.set(30);
    settings.Retries.set(5);
    ASSERT_TRUE(settings.flush());
    {
        QSettings other(iniPath(), QSettings::IniFormat);
        other.setValue(QStringLiteral("Volume"), QStringLiteral("61"));
        other.remove(QStringLiteral("Retries"));
    }
    EXPECT_TRUE(waitForValue(settings.Volume, 61));
    // Gone from the file: what was last set here stands in.
    EXPECT_EQ(settings.Retries(), 5);
    settings.Volume.set(62);
    EXPECT_EQ(settings.Volume(), 62);
    ASSERT_TRUE(settings.flush());
    EXPECT_TRUE(readIni().contains("Volume=62"));
}

TEST_F(SettingsTest, AnySettingsObjectOfTheProcessOpensTheSameFile) {
    AppSettings settings(folder());
    settings.Volume.set(12);
    ASSERT_TRUE(settings.flush());
    const QSettings file;
    EXPECT_EQ(file.fileName(), iniPath());
    EXPECT_EQ(file.value(QStringLiteral("Volume")).toString(), QStringLiteral("12"));
}

TEST_F(SettingsTest, ABurstOfChangesIsWrittenTogether) {
    AppSettings settings(folder());
    settings.Volume.set(1);
    ASSERT_TRUE(settings.flush());
    // Less than the pause between writes: all twenty wait for the next one.
    int writes = 0;
    QByteArray last = readIni();
    for (int n = 0; n < 20; ++n)
        settings.setColumnWidth(QStringLiteral("T"), n, n + 1);
    ASSERT_TRUE(waitFor([&] {
        const QByteArray now = readIni();
        writes += now == last ? 0 : 1;
        last = now;
        return now.contains("ColWidth_T19=20");
    }));
    EXPECT_LE(writes, 2);
}

TEST_F(SettingsTest, FiveProcessesKeepEachOthersChanges) {
    constexpr int kProcesses = 5;
    constexpr int kKeys = 60;
    std::vector<std::unique_ptr<Child>> children;
    for (int n = 0; n < kProcesses; ++n)
        children.push_back(std::make_unique<Child>(QStringList{QStringLiteral("write"),
                                                               m_dir.path(),
                                                               QStringLiteral("P%1").arg(n),
                                                               QString::number(kKeys)}));
    for (const auto& child : children) {
        ASSERT_TRUE(child->waitForEnd());
        ASSERT_EQ(child->exitCode(), 0) << child->output().constData();
    }
    const AppSettings settings(folder());
    for (int n = 0; n < kProcesses; ++n)
        for (int key = 0; key < kKeys; ++key)
            EXPECT_EQ(settings.columnWidth(QStringLiteral("P%1").arg(n), key), key + 1)
                << n << " " << key;
    EXPECT_TRUE(setAsideFiles().isEmpty());
}

TEST_F(SettingsTest, AKilledProcessHasWrittenWithoutExit) {
    Child child({QStringLiteral("write-and-stay"),
                 m_dir.path(),
                 QStringLiteral("P"),
                 QStringLiteral("25")});
    ASSERT_TRUE(child.waitForOutput("put"));
    ASSERT_TRUE(waitFor([&] { return readIni().contains("ColWidth_P24=25"); }));
    child.kill();
    const AppSettings settings(folder());
    for (int key = 0; key < 25; ++key)
        EXPECT_EQ(settings.columnWidth(QStringLiteral("P"), key), key + 1);
    // Nor does its lock keep anybody out.
    AppSettings next(folder());
    next.Volume.set(3);
    EXPECT_TRUE(next.flush());
}
