#include "app/instance_block.h"
#include "app/instance_frames.h"
#include "app/instance_name.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

namespace {
InstanceIdentity someIdentity() {
    InstanceIdentity identity;
    identity.applicationName = QStringLiteral("App");
    identity.organizationName = QStringLiteral("Org");
    identity.organizationDomain = QStringLiteral("org.example");
    identity.applicationVersion = QStringLiteral("1.2");
    identity.applicationFilePath = QStringLiteral("/Opt/App");
    identity.userName = QStringLiteral("j\u00f6rg");
    return identity;
}

QString digestOf(const QByteArray& text) {
    return QString::fromLatin1(
        QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64().replace('/', '_'));
}
} // namespace

TEST(InstanceName, HoldsWhatTheOptionsSay) {
    InstanceIdentity identity = someIdentity();
    const QByteArray start = "SingleApplicationAppOrgorg.example";
    struct Case {
        int options;
        QByteArray text;
    };
    const Case cases[] = {{1, start + "1.2/opt/appj\xc3\xb6rg"},
                          {0, start + "1.2/opt/app"},
                          {2, start + "1.2/opt/app"},
                          {1 | 8, start + "/opt/appj\xc3\xb6rg"},
                          {8 | 16, start}};
    for (const Case& c : cases)
        EXPECT_EQ(blockServerName(identity, c.options), digestOf(c.text)) << c.options;
    identity.userData = QStringList({QStringLiteral("u"), QStringLiteral("v")});
    EXPECT_EQ(blockServerName(identity, 8 | 16), digestOf(start + "uv"));
    EXPECT_FALSE(blockServerName(identity, 1).contains(QLatin1Char('/')));
}

TEST(InstanceBlock, ChecksumFollowsEveryChange) {
    InstanceBlock block;
    resetBlock(block);
    EXPECT_TRUE(isBlockConsistent(block));
    EXPECT_FALSE(isBlockUntouched(block));
    block.secondaries = 3;
    EXPECT_FALSE(isBlockConsistent(block));
    setBlockPrimary(block, 1234567890123, QString(200, QLatin1Char('n')));
    EXPECT_TRUE(isBlockConsistent(block));
    EXPECT_EQ(blockPrimaryUser(block), QString(127, QLatin1Char('n')));
    clearBlockPrimary(block);
    EXPECT_TRUE(isBlockConsistent(block));
    EXPECT_EQ(block.secondaries, 3U);
    EXPECT_FALSE(block.isPrimaryPresent);
}

TEST(InstanceFrames, IntroductionIsAsDocumentedAndChecked) {
    const QString name = QStringLiteral("ab=");
    const QByteArray body = initialBody(name, {ConnectionType::Reconnect, 0x01020304});
    EXPECT_EQ(body.left(12), QByteArray::fromHex("0000000361623d0301020304"));
    EXPECT_EQ(body.size(), 14);
    EXPECT_EQ(frameHeader(14), QByteArray::fromHex("000000000000000e"));
    const std::optional<InitialFrame> frame = readInitialBody(body, name);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->instanceId, 0x01020304U);

    EXPECT_FALSE(readInitialBody(body, QStringLiteral("ac=")));
    EXPECT_FALSE(readInitialBody(body + 'x', name));
    EXPECT_FALSE(readInitialBody(initialBody(name, {ConnectionType::Invalid, 1}), name));
    for (int cut = 0; cut < body.size(); ++cut)
        EXPECT_FALSE(readInitialBody(body.left(cut), name)) << cut;
    for (int at = 0; at < body.size(); ++at) {
        QByteArray flipped = body;
        flipped[at] = static_cast<char>(flipped[at] ^ 0x10);
        EXPECT_FALSE(readInitialBody(flipped, name)) << at;
    }
}

TEST(InstanceFrames, ReaderTakesAnyChunking) {
    const QByteArray bytes =
        frameHeader(3) + "abc" + frameHeader(0) + frameHeader(2) + "de" + frameHeader(11);
    for (int chunk = 1; chunk <= bytes.size(); ++chunk) {
        FrameReader reader;
        QByteArray seen;
        for (int at = 0; at < bytes.size(); at += chunk) {
            reader.feed(bytes.mid(at, chunk));
            for (FrameReader::Step step = reader.next(10); step != FrameReader::Step::NeedMore;
                 step = reader.next(10)) {
                if (step == FrameReader::Step::TooLong) {
                    seen += '!';
                    break;
                }
                seen += step == FrameReader::Step::HeaderRead ? QByteArray("h")
                                                              : '<' + reader.body() + '>';
            }
        }
        EXPECT_EQ(seen, QByteArray("h<abc>h<>h<de>!")) << chunk;
    }
}
