#include "platform/local_link.h"
#include "platform/program_arguments.h"
#include "platform/registry_guard.h"
#include "platform/shared_block.h"
#include "platform/special_folders.h"
#include "platform/user_name.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QUuid>

#include <gtest/gtest.h>

TEST(LinuxPlatform, SpecialFoldersAndUserAreKnown) {
    EXPECT_FALSE(programFolders().folders.isEmpty());
    EXPECT_TRUE(QDir::isAbsolutePath(musicFolder()));
    EXPECT_FALSE(userName().isEmpty());
    EXPECT_EQ(shippedDataFolders(QStringLiteral("/usr/bin")).first(), QStringLiteral("/usr/bin"));
    EXPECT_TRUE(shippedDataFolders(QStringLiteral("/usr/bin"))
                    .contains(QStringLiteral("/usr/share/wavelark")));
    EXPECT_EQ(installRegistryGuard(), 0);
}

TEST(LinuxPlatform, TheUserIsKnownWithoutAnEnvironment) {
    const QByteArray user = qgetenv("USER");
    const QString before = userName();
    qputenv("USER", "somebody-else");
    EXPECT_EQ(userName(), before);
    qputenv("USER", user);
}

TEST(LinuxPlatform, ArgumentsKeepEveryLetter) {
    const char* const arguments[] = {"w", "/name=\xc3\xa4\xe2\x82\xac", "", "\xf0\x9f\x8e\xb5"};
    const QStringList read = programArguments(4, arguments);
    ASSERT_EQ(read.size(), 4);
    EXPECT_EQ(read.at(1), QString::fromUtf8("/name=\xc3\xa4\xe2\x82\xac"));
    EXPECT_TRUE(read.at(2).isEmpty());
    EXPECT_EQ(read.at(3).toUtf8(), QByteArray("\xf0\x9f\x8e\xb5"));
    // Not UTF-8: something is better than nothing.
    const char* const latin[] = {"w", "/name=\xe4"};
    EXPECT_TRUE(programArguments(2, latin).at(1).startsWith(QLatin1String("/name=")));
}

TEST(LinuxPlatform, LocalPeersShowTheirUser) {
    const QString address = localServerAddress(QUuid::createUuid().toString());
    // The address does not follow the session's environment.
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/nowhere");
    EXPECT_EQ(localServerAddress(QStringLiteral("x")), QStringLiteral("/tmp/x"));
    qputenv("TMPDIR", before);

    QLocalServer server;
    ASSERT_TRUE(server.listen(address));
    QLocalSocket socket;
    socket.connectToServer(address);
    ASSERT_TRUE(server.waitForNewConnection(5000));
    EXPECT_TRUE(isPeerSameUser(server.nextPendingConnection()->socketDescriptor()));
    EXPECT_TRUE(isPeerSameUser(socket.socketDescriptor()));
    EXPECT_FALSE(isPeerSameUser(-1));
}

/// Windows keeps a block until its last holder goes.
TEST(LinuxPlatform, ARemovedBlockIsLeftForItsSuccessor) {
    const QString name = QUuid::createUuid().toString();
    constexpr int kBytes = 152;
    SharedBlock first(name, kBytes, SharedBlock::Scope::User);
    SharedBlock second(name, kBytes, SharedBlock::Scope::User);
    ASSERT_EQ(first.create(), SharedBlock::Opened::Created);
    ASSERT_TRUE(second.attach());
    ASSERT_TRUE(second.lock());
    second.data()[0] = 'x';
    second.remove();
    ASSERT_TRUE(second.unlock());
    SharedBlock third(name, kBytes, SharedBlock::Scope::User);
    EXPECT_FALSE(third.attach());
    EXPECT_FALSE(first.lock(SharedBlock::WhenGone::Fail));
    ASSERT_TRUE(first.lock());
    EXPECT_EQ(first.data()[0], 0);
    first.remove();
    ASSERT_TRUE(first.unlock());
}
