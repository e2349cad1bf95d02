#include "app/ini_codec.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

TEST(IniCodec, TellsHandEditedFilesFromDamagedOnes) {
    struct Case {
        const char* name;
        QByteArray bytes;
        IniHealth health;
        QByteArray good;
    };
    const Case cases[] = {
        {"empty", "", IniHealth::Good, ""},
        {"plain", "[General]\r\nA=1\r\n", IniHealth::Good, "A=1"},
        {"byte order mark", "\xef\xbb\xbf[General]\nA=1\n", IniHealth::Good, "A=1"},
        {"comments", "; c\n# c\n[x]\nA=\"a;b\"\n", IniHealth::Good, "A="},
        {"UTF-8", "[General]\nA=\xc3\xa4\n", IniHealth::Good, "A="},
        {"Latin-1", "[General]\nA=\xe4\n", IniHealth::Good, "A="},
        {"torn at the end", "[General]\nA=1\nLangu", IniHealth::Faulty, "A=1"},
        {"open quote", "[General]\nA=\"x\nB=2\n", IniHealth::Faulty, "B=2"},
        {"no key", "[General]\n=1\nA=1\n", IniHealth::Faulty, "A=1"},
        {"open section", "[Gene\nA=1\n", IniHealth::Faulty, "A=1"},
        {"zeros after power loss", QByteArray(4096, '\0'), IniHealth::Garbage, ""},
        {"zero at the end", QByteArray("[General]\nA=1\n\0", 15), IniHealth::Garbage, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(checkIni(c.bytes), c.health) << c.name;
        if (c.health == IniHealth::Faulty) {
            EXPECT_TRUE(goodIniLines(c.bytes).contains(c.good)) << c.name;
            EXPECT_EQ(checkIni(goodIniLines(c.bytes)), IniHealth::Good) << c.name;
        }
    }
}

TEST(IniCodec, RandomBytesAreNeverTakenForSettings) {
    QRandomGenerator random(20260101);
    for (int round = 0; round < 200; ++round) {
        QByteArray bytes(300, Qt::Uninitialized);
        for (char& c : bytes)
            c = static_cast<char>(random.bounded(256));
        EXPECT_NE(checkIni(bytes), IniHealth::Good);
    }
}

TEST(IniCodec, ChangesLeaveForeignKeysAndForeignLettersAlone) {
    const QByteArray before = "[General]\nForeign=k\xc3\xa4se\nGone=1\nKept=@ByteArray(\\x1\\xff)\n"
                              "[Other]\nDeep\\Key=5\n";
    QVariantMap changes;
    changes.insert(QStringLiteral("New"), QStringLiteral("n\u00fc"));
    changes.insert(QStringLiteral("Gone"), QVariant());
    const Result<QByteArray> after = changeIni(before, changes);
    ASSERT_TRUE(after);
    const Result<QVariantMap> values = parseIni(after.value());
    ASSERT_TRUE(values);
    EXPECT_EQ(values.value().size(), 4);
    EXPECT_EQ(values.value().value(QStringLiteral("Foreign")).toString(),
              QStringLiteral("k\u00e4se"));
    EXPECT_EQ(values.value().value(QStringLiteral("New")).toString(), QStringLiteral("n\u00fc"));
    EXPECT_EQ(values.value().value(QStringLiteral("Kept")).toByteArray(), QByteArray("\x01\xff"));
    EXPECT_EQ(values.value().value(QStringLiteral("Other/Deep/Key")).toString(),
              QStringLiteral("5"));
}
