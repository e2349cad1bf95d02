#include "app/application_proxy.h"
#include "app/program_data.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
class ProgramData : public ::testing::Test {
  protected:
    void SetUp() override {
        make("home/Wavelark/Brindlecove/Wavelark.ini");
        make("home/Wavelark/favorites.xml");
        make("home/Wavelark/.hidden/deep/file");
        make("home/precious.txt");
    }

    void make(const char* name) const {
        const QString path = at(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    [[nodiscard]] QString at(const char* name) const { return m_dir.filePath(QLatin1String(name)); }
    [[nodiscard]] bool exists(const char* name) const { return QFile::exists(at(name)); }
    [[nodiscard]] RemovalInput input(const char* folder, bool isPortable) const {
        DataFolder data;
        data.path = at(folder);
        data.applicationDir = isPortable ? at(folder) : at("program");
        data.isPortable = isPortable;
        return {data, at("home")};
    }

    QTemporaryDir m_dir;
};
} // namespace

TEST_F(ProgramData, TheWholeFolderGoesAndNothingBeside) {
    ASSERT_TRUE(QFile::link(at("home/precious.txt"), at("home/Wavelark/link")));
    ASSERT_TRUE(QFile::link(at("home"), at("home/Wavelark/homelink")));
    const Result<RemovalPlan> plan = planRemoval(input("home/Wavelark", false));
    ASSERT_TRUE(plan);
    ASSERT_TRUE(removeProgramData(plan.value()));
    EXPECT_FALSE(exists("home/Wavelark"));
    EXPECT_TRUE(exists("home/precious.txt"));
    const Result<RemovalPlan> again = planRemoval(input("home/Wavelark", false));
    ASSERT_TRUE(again);
    EXPECT_TRUE(again.value().paths.isEmpty());
}

TEST_F(ProgramData, NeverHomeNorRootNorAStrangersFolder) {
    make("home/Brindlecove/Wavelark.ini");
    make("other/file");
    for (const char* folder : {"home", "", "other"}) {
        EXPECT_FALSE(planRemoval(input(folder, false))) << folder;
        EXPECT_FALSE(planRemoval(input(folder, true))) << folder;
    }
    RemovalInput root = input("home/Wavelark", false);
    root.folder.path = QStringLiteral("/");
    EXPECT_FALSE(planRemoval(root));
    root.folder.path.clear();
    EXPECT_FALSE(planRemoval(root));
    root.folder.path = at("home/Wavelark/../");
    EXPECT_FALSE(planRemoval(root));
    ASSERT_TRUE(QFile::link(at("home"), at("alias")));
    const bool isFolderLink = QFileInfo(at("alias")).isDir(); // not on every system
    EXPECT_TRUE(!isFolderLink || !planRemoval(input("alias", false)));
}

TEST_F(ProgramData, APortableFolderKeepsProgramAndRecordings) {
    make("stick/Brindlecove/Wavelark.ini");
    make("stick/wavelark");
    make("stick/history.xml");
    make("stick/Recordings/take.mp3");
    const Result<RemovalPlan> plan = planRemoval(input("stick", true));
    ASSERT_TRUE(plan);
    ASSERT_TRUE(removeProgramData(plan.value()));
    EXPECT_FALSE(exists("stick/Brindlecove"));
    EXPECT_FALSE(exists("stick/history.xml"));
    EXPECT_TRUE(exists("stick/wavelark"));
    EXPECT_TRUE(exists("stick/Recordings/take.mp3"));
}

TEST(ApplicationProxy, TextForTheAudioLibrary) {
    struct Case {
        ProxySettings proxy;
        QString expected;
    };
    const QString host = QStringLiteral("p.lan");
    const QString user = QStringLiteral("ann");
    const QString word = QStringLiteral("x");
    const Case cases[] = {
        {{host, QStringLiteral("8080"), user, word, false}, QStringLiteral("ann:x@p.lan:8080")},
        {{host, QString(), QString(), word, false}, host},
        {{host, QStringLiteral("0"), QString(), QString(), false}, host},
        {{host, QStringLiteral("8080"), user, word, true}, QString()},
        {{QString(), QStringLiteral("8080"), user, word, false}, QString()},
        {{QString(2000, QLatin1Char('h')), QString(), QString(), QString(), false}, QString()},
    };
    for (const Case& c : cases)
        EXPECT_EQ(audioProxyText(c.proxy), c.expected);
}
