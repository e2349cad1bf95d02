#include "platform/crash_text.h"
#include "platform/keep_awake.h"
#include "platform/named_mapping.h"
#include "platform/process.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QUuid>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

TEST(NamedMapping, HoldsEveryByteAndGoesWithItsObject) {
    constexpr qint64 kBytes = 3 * 1048576 + 1;
    const QString name = QStringLiteral("map_") + QUuid::createUuid().toString();
    for (int round = 0; round < 2; ++round) { // the name is free again, and its bytes are zero
        auto made = NamedMapping::create(name, kBytes);
        ASSERT_TRUE(made) << made.error().toStdString();
        NamedMapping mapping = std::move(made.value());
        EXPECT_EQ(made.value().data(), nullptr);
        EXPECT_EQ(mapping.size(), kBytes);
        EXPECT_EQ(mapping.data()[0], 0);
        EXPECT_EQ(mapping.data()[kBytes - 1], 0);
        std::memset(mapping.data(), 'x', static_cast<std::size_t>(kBytes));
        auto other = NamedMapping::create(name + QLatin1Char('2'), 1);
        ASSERT_TRUE(other);
        mapping = std::move(other.value());
        EXPECT_EQ(mapping.size(), 1);
    }
}

TEST(NamedMapping, WhatCannotBeMadeSaysWhy) {
    const struct {
        const char* what;
        QString name;
        qint64 bytes;
    } cases[] = {
        {"no bytes", QStringLiteral("map_a"), 0},
        {"negative", QStringLiteral("map_a"), -1},
        {"no name", QString(), 4096},
        {"a folder", QStringLiteral("Global\\map_a"), 4096},
        {"a path", QStringLiteral("../map_a"), 4096},
        {"a long name", QString(201, QLatin1Char('m')), 4096},
        {"more than there is", QStringLiteral("map_a"), std::numeric_limits<qint64>::max()},
    };
    for (const auto& c : cases) {
        const auto made = NamedMapping::create(c.name, c.bytes);
        ASSERT_FALSE(made) << c.what;
        EXPECT_TRUE(made.error().startsWith(QLatin1String("Could not create "))) << c.what;
    }
}

TEST(KeepAwake, IsGivenBack) {
    KeepAwake awake;
    EXPECT_FALSE(awake.isActive());
    for (const bool isActive : {true, true, false, true}) {
        awake.setActive(isActive);
        EXPECT_EQ(awake.isActive(), isActive);
    }
}

TEST(CrashText, WritesTimesAndNumbers) {
    const struct {
        std::int64_t seconds;
        const char* text;
    } times[] = {
        {0, "1970-01-01T00:00:00Z"},
        {951782399, "2000-02-28T23:59:59Z"},
        {951782400, "2000-02-29T00:00:00Z"},
        {951868800, "2000-03-01T00:00:00Z"},
        {1709251199, "2024-02-29T23:59:59Z"},
        {1767225599, "2025-12-31T23:59:59Z"},
        {4107542400, "2100-03-01T00:00:00Z"},
        {-5, "1970-01-01T00:00:00Z"},
    };
    for (const auto& c : times) {
        CrashText text;
        text.time(c.seconds);
        EXPECT_EQ(std::string(text.data(), text.size()), c.text);
    }
    CrashText text;
    text.number(0).text(" ").number(~0ULL).text(" ").hex(0xdeadbeef);
    EXPECT_EQ(std::string(text.data(), text.size()), "0 18446744073709551615 0xdeadbeef");
    for (int n = 0; n < 200; ++n)
        text.text("twelve bytes");
    EXPECT_EQ(text.size(), 1024U);
}

/// A process that faults leaves a report and ends as one that has faulted.
TEST(CrashReport, FaultsAreWrittenDown) {
    for (const char* kind : {"access", "abort", "exception"}) {
        SCOPED_TRACE(kind);
        const QTemporaryDir folder;
        const QString path = folder.filePath(QString::fromUtf8("cr\xc3\xa4sh \xe2\x80\x93.txt"));
        for (int round = 1; round <= 2; ++round) { // a second one is added to the first
            QProcess child;
            child.start(QStringLiteral(CRASH_TEST_CHILD), {path, QString::fromLatin1(kind)});
            ASSERT_TRUE(child.waitForFinished(60000));
            EXPECT_TRUE(child.exitStatus() == QProcess::CrashExit || child.exitCode() != 0);
            EXPECT_FALSE(child.readAllStandardOutput().contains("survived"));
            QFile report(path);
            ASSERT_TRUE(report.open(QIODevice::ReadOnly));
            const QByteArray text = report.readAll();
            EXPECT_EQ(text.count("version: 1.2.3 test\n"), round) << text.constData();
            EXPECT_EQ(text.count("time: 20"), round);
            EXPECT_EQ(text.count("fault: "), round);
            EXPECT_GE(text.mid(text.lastIndexOf("stack:")).count("crash_test_child"), 1)
                << text.constData();
        }
    }
}

TEST(CrashReport, AFullFileIsBegunAnew) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("crash.txt"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(300 * 1024, 'x'));
    file.close();
    QProcess child;
    child.start(QStringLiteral(CRASH_TEST_CHILD), {path, QStringLiteral("none")});
    ASSERT_TRUE(child.waitForFinished(60000));
    EXPECT_EQ(child.exitCode(), 0);
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST(Process, OnlyALivingProcessOfThisProgramCounts) {
    EXPECT_TRUE(isThisProgramRunning(QCoreApplication::applicationPid()));
    for (const qint64 pid : {qint64{0}, qint64{-1}, qint64{1} << 40, qint64{0x7ffffff0}})
        EXPECT_FALSE(isThisProgramRunning(pid)) << pid;

    QProcess other;
    other.start(QStringLiteral(CRASH_TEST_CHILD), {QString(), QStringLiteral("wait")});
    ASSERT_TRUE(other.waitForStarted());
    const qint64 pid = other.processId();
    EXPECT_FALSE(isThisProgramRunning(pid)); // lives, but is another program
    other.kill();
    other.waitForFinished();
    EXPECT_FALSE(isThisProgramRunning(pid));
}
