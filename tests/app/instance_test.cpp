#include "app/instance_frames.h"
#include "app/process_fixture.h"
#include "platform/local_link.h"

#include <QLocalSocket>
#include <QUuid>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {
/// A link that no other test has.
QString freshLink() {
    return QUuid::createUuid().toString();
}

QStringList instance(const QString& link, const QString& text) {
    return {QStringLiteral("instance"), link, text};
}

/// "role=primary <name> <pid> <user>"
QString serverNameOf(Child& primary) {
    return QString::fromLatin1(primary.output().split(' ').value(1).trimmed());
}

bool forward(const QString& link, const QString& text) {
    Child second(instance(link, text));
    return second.waitForEnd() && second.exitCode() == 0 && second.output().contains("sent ");
}

/// Leaves nothing of the link behind.
void end(Child& primary, const QString& link) {
    EXPECT_TRUE(forward(link, QStringLiteral("quit")));
    EXPECT_TRUE(primary.waitForEnd());
    EXPECT_EQ(primary.exitCode(), 0) << primary.output().constData();
}

bool connectRaw(QLocalSocket& socket, const QString& name) {
    socket.connectToServer(localServerAddress(name));
    return socket.waitForConnected(5000);
}
} // namespace

TEST(Instance, ASecondStartHandsItsTextOver) {
    const QString link = freshLink();
    Child first(instance(link, QStringLiteral("-")));
    ASSERT_TRUE(first.waitForOutput("role=primary"));
    Child second(instance(link, QString::fromUtf8("a\n/url=\xc3\xa4")));
    ASSERT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(second.output().contains("sent " + QByteArray::number(first.pid())))
        << second.output().constData();
    EXPECT_TRUE(first.waitForOutput("received 1 <a\n/url=\xc3\xa4> 9"));
    // Another link is another program.
    const QString otherLink = freshLink();
    Child stranger(instance(otherLink, QStringLiteral("x")));
    EXPECT_TRUE(stranger.waitForOutput("role=primary"));
    end(stranger, otherLink);

    end(first, link);
    Child next(instance(link, QStringLiteral("-")));
    EXPECT_TRUE(next.waitForOutput("role=primary"));
    end(next, link);
}

TEST(Instance, RefusedSecondariesEndWithZeroAndTellThePrimary) {
    const QString link = freshLink();
    Child first({QStringLiteral("refused"), link});
    ASSERT_TRUE(first.waitForOutput("role=primary"));
    Child second({QStringLiteral("refused"), link});
    ASSERT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(second.output().contains("exit"));
    EXPECT_TRUE(first.waitForOutput("started"));
    end(first, link);
}

TEST(Instance, AKilledPrimaryIsReplacedByTheNextStart) {
    const QString link = freshLink();
    for (int round = 0; round < 3; ++round) {
        Child first(instance(link, QStringLiteral("-")));
        ASSERT_TRUE(first.waitForOutput("role=primary")) << first.output().constData();
        EXPECT_TRUE(forward(link, QStringLiteral("hello")));
        EXPECT_TRUE(first.waitForOutput("<hello>"));
        first.kill();
    }
    Child last(instance(link, QStringLiteral("-")));
    ASSERT_TRUE(last.waitForOutput("role=primary"));
    end(last, link);
}

TEST(Instance, MessagesReachAPrimaryWhoseWindowIsBusy) {
    const QString link = freshLink();
    Child hung({QStringLiteral("hung"), link});
    ASSERT_TRUE(hung.waitForOutput("role=primary"));
    EXPECT_TRUE(forward(link, QStringLiteral("x")));
    hung.kill();
    Child next(instance(link, QStringLiteral("-")));
    ASSERT_TRUE(next.waitForOutput("role=primary"));
    end(next, link);
}

TEST(Instance, OfFiftyStartsOneIsPrimaryAndGetsAllOthers) {
    constexpr int kStarts = 50;
    const QString link = freshLink();
    for (int round = 0; round < 2; ++round) { // the second round begins on a killed primary's rest
        std::vector<std::unique_ptr<Child>> children;
        for (int n = 0; n < kStarts; ++n)
            children.push_back(
                std::make_unique<Child>(instance(link, QStringLiteral("text %1.").arg(n))));
        const auto isPrimary = [](const auto& child) {
            return child->output().contains("role=primary ");
        };
        ASSERT_TRUE(
            waitFor([&] { return std::any_of(children.begin(), children.end(), isPrimary); }));
        Child& primary = **std::find_if(children.begin(), children.end(), isPrimary);
        for (const auto& child : children) {
            if (child.get() == &primary)
                continue;
            ASSERT_TRUE(child->waitForEnd());
            EXPECT_TRUE(child->output().contains("sent ")) << child->output().constData();
        }
        EXPECT_EQ(std::count_if(children.begin(), children.end(), isPrimary), 1);
        EXPECT_TRUE(waitFor([&] { return primary.output().count("received ") == kStarts - 1; }))
            << primary.output().count("received ");
        if (round == 0)
            primary.kill();
        else
            end(primary, link);
    }
}

TEST(Instance, HostilePeersAreCutOffAndOthersServed) {
    const QString link = freshLink();
    Child primary(instance(link, QStringLiteral("-")));
    ASSERT_TRUE(primary.waitForOutput("role=primary"));
    const QString name = serverNameOf(primary);

    QLocalSocket silent;
    QLocalSocket garbage;
    QLocalSocket huge;
    ASSERT_TRUE(connectRaw(silent, name));
    ASSERT_TRUE(connectRaw(garbage, name));
    ASSERT_TRUE(connectRaw(huge, name));
    garbage.write(QByteArray(100000, '\x00'));
    garbage.flush();

    const QByteArray body = initialBody(name, {ConnectionType::Reconnect, 9});
    huge.write(frameHeader(static_cast<quint64>(body.size())) + body);
    huge.write(frameHeader(100U * 1024 * 1024));
    huge.flush();
    EXPECT_TRUE(forward(link, QStringLiteral("in between")));
    EXPECT_TRUE(primary.waitForOutput("<in between>"));
    EXPECT_TRUE(waitFor([&] { return huge.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_TRUE(waitFor([&] { return garbage.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_TRUE(waitFor([&] { return silent.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_TRUE(primary.output().contains("frame too long"));
    EXPECT_TRUE(primary.output().contains("wrong introduction"));
    EXPECT_TRUE(primary.output().contains("no complete frame in time"));

    // A crowd that says nothing does not keep the next one out.
    std::vector<std::unique_ptr<QLocalSocket>> crowd;
    for (int n = 0; n < 100; ++n) {
        crowd.push_back(std::make_unique<QLocalSocket>());
        connectRaw(*crowd.back(), name);
    }
    EXPECT_TRUE(forward(link, QStringLiteral("after the crowd")));
    EXPECT_TRUE(primary.waitForOutput("<after the crowd>"));
    end(primary, link);
}

TEST(Instance, LongMessagesArriveWhole) {
    const QString link = freshLink();
    Child primary(instance(link, QStringLiteral("-")));
    ASSERT_TRUE(primary.waitForOutput("role=primary"));
    EXPECT_TRUE(forward(link, QString(30000, QLatin1Char('x'))));
    EXPECT_TRUE(primary.waitForOutput("> 30000"));
    end(primary, link);
}
