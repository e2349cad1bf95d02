#include "app/settings_fixture.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace {
QString native(const QString& path) {
    return QDir::toNativeSeparators(path);
}

struct FileCase {
    const char* lines;
    const char* expected;
};
} // namespace

TEST_F(SettingsTest, ProxyDisabledTakesNumbersAndTheExactWord) {
    const FileCase cases[] = {{"", "false"},
                              {"ProxyDisabled=1\n", "true"},
                              {"ProxyDisabled=-3\n", "true"},
                              {"ProxyDisabled=0\n", "false"},
                              {"ProxyDisabled=true\n", "true"},
                              {"ProxyDisabled=True\n", "false"},
                              {"ProxyDisabled=yes\n", "false"},
                              {"ProxyDisabled=\n", "false"}};
    for (const FileCase& c : cases) {
        writeIni(QByteArray("[General]\n") + c.lines);
        EXPECT_EQ(AppSettings(folder()).ProxyDisabled(), QByteArray(c.expected) == "true")
            << c.lines;
    }
}

TEST_F(SettingsTest, ClockFormatFollowsTheLocaleUntilItIsSet) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_FALSE(AppSettings(folder()).ScheduleTime24h());
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    AppSettings settings(folder());
    EXPECT_TRUE(settings.ScheduleTime24h());
    settings.SetScheduleTime24h(false);
    EXPECT_FALSE(settings.ScheduleTime24h());
    QLocale::setDefault(before);
}

TEST_F(SettingsTest, RecordingFolderIsResolvedAgainstTheDataFolder) {
    AppSettings settings(folder());
    EXPECT_EQ(settings.AppRecordingFolder(), native(m_dir.filePath(QStringLiteral("Recordings"))));
    settings.SetAppRecordingFolder(QStringLiteral("takes/today"));
    EXPECT_EQ(settings.AppRecordingFolder(), native(m_dir.filePath(QStringLiteral("takes/today"))));
    settings.SetAppRecordingFolder(QStringLiteral("../beside"));
    EXPECT_EQ(settings.AppRecordingFolder(),
              native(QDir::cleanPath(m_dir.filePath(QStringLiteral("../beside")))));
    const QString elsewhere = QDir::rootPath() + QStringLiteral("elsewhere");
    settings.SetAppRecordingFolder(elsewhere);
    EXPECT_EQ(settings.AppRecordingFolder(), native(elsewhere));

    DataFolder installed = folder();
    installed.isPortable = false;
    settings.SetAppRecordingFolder(QString());
    ASSERT_TRUE(settings.flush());
    EXPECT_EQ(AppSettings(installed).AppRecordingFolder(),
              native(QDir(musicFolder()).filePath(QStringLiteral("Wavelark"))));
}

TEST_F(SettingsTest, GenericDateAndTimeFormatsOfOlderFilesWin) {
    struct Case {
        const char* lines;
        const char* splitDate;
        const char* plainDate;
        const char* splitTime;
    };
    const Case cases[] = {
        {"", "dd.MMM.yyyy", "dd.MMM.yyyy", "h.mm.ss AP"},
        {"RecDateFormatSplitting=a\nRecTimeFormatSplitting1=t\n", "a", "dd.MMM.yyyy", "t"},
        {"RecDateFormatNoSplitting=b\n", "dd.MMM.yyyy", "b", "h.mm.ss AP"},
        {"RecDateFormat=g\nRecDateFormatSplitting=a\nRecTimeFormat1=u\n", "g", "g", "u"},
    };
    for (const Case& c : cases) {
        writeIni(QByteArray("[General]\n") + c.lines);
        const AppSettings settings(folder());
        EXPECT_EQ(settings.RecDateFormat(RecordSplitting::On), QLatin1String(c.splitDate));
        EXPECT_EQ(settings.RecDateFormat(RecordSplitting::Off), QLatin1String(c.plainDate));
        EXPECT_EQ(settings.RecTimeFormat(RecordSplitting::On), QLatin1String(c.splitTime));
    }
    AppSettings settings(folder());
    settings.SetRecDateFormat(RecordSplitting::On, QStringLiteral("new"));
    EXPECT_EQ(settings.RecDateFormat(RecordSplitting::On), QStringLiteral("new"));
    EXPECT_EQ(settings.RecDateFormat(RecordSplitting::Off), QStringLiteral("g"));
}

TEST_F(SettingsTest, PodcastCountryFollowsTheLanguageFile) {
    const FileCase cases[] = {{"", "us"},
                              {"LanguageFile=German.lng\n", "de"},
                              {"LanguageFile=french.lng\n", "fr"},
                              {"LanguageFile=portuguese (brazilian).lng\n", "pt"},
                              {"LanguageFile=czech.lng\n", "cz"},
                              {"LanguageFile=german.lng\nPodcastCountryCode=at\n", "at"},
                              {"LanguageFile=Suomi.lng\n", "us"}};
    for (const FileCase& c : cases) {
        writeIni(QByteArray("[General]\n") + c.lines);
        EXPECT_EQ(AppSettings(folder()).PodcastCountryCode(), QLatin1String(c.expected)) << c.lines;
    }
}

TEST_F(SettingsTest, AltPresetFilesEndAtAGapAndAtFive) {
    writeIni("[General]\nAltPresetFile1=a\nAltPresetFile3=c\n");
    EXPECT_EQ(AppSettings(folder()).altPresetFiles(), QStringList(QStringLiteral("a")));
    writeIni("[General]\nAltPresetFile1=a\nAltPresetFile2=b\nAltPresetFile3=c\nAltPresetFile4=d\n"
             "AltPresetFile5=e\nAltPresetFile6=f\n");
    {
        AppSettings settings(folder());
        EXPECT_EQ(settings.altPresetFiles().size(), 5);
        settings.SetAltPresetFiles({QStringLiteral("x"), QStringLiteral("y")});
    }
    EXPECT_EQ(AppSettings(folder()).altPresetFiles(),
              QStringList({QStringLiteral("x"), QStringLiteral("y")}));
}

TEST_F(SettingsTest, FontScreenReaderAndFavoritesHaveTheirDefaults) {
    AppSettings settings(folder());
    EXPECT_EQ(settings.GetAppFont().family, QStringLiteral("Arial"));
    EXPECT_EQ(settings.GetAppFont().pointSize, 10);
    EXPECT_EQ(settings.listFont().pointSize, 11);
    settings.SetAppFont(QStringLiteral("DejaVu Sans,14,-1,5,50,0,0,0,0,0"));
    EXPECT_EQ(settings.GetAppFont().family, QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(settings.GetAppFont().pointSize, 14);
    EXPECT_TRUE(settings.hasScreenReader());
    settings.SetScreenReader(QStringLiteral("cmdOff"));
    EXPECT_FALSE(settings.hasScreenReader());
    EXPECT_EQ(settings.LastFavoritesFile(),
              native(m_dir.filePath(QStringLiteral("favorites.xml"))));
}

TEST_F(SettingsTest, ListFilesKeepEntriesAndSkipEmptyLines) {
    const AppSettings settings(folder());
    const QString name = QStringLiteral("wishlist.txt");
    EXPECT_TRUE(settings.loadList(name).isEmpty());
    const QStringList entries{QStringLiteral("Bj\u00f6rk - J\u00f3ga"), QStringLiteral(" b ")};
    ASSERT_TRUE(settings.saveList(name, entries));
    EXPECT_EQ(readFile(settings.dataFile(name)), QByteArray("Bj\xc3\xb6rk - J\xc3\xb3ga\n b \n"));
    EXPECT_EQ(settings.loadList(name), entries);

    QFile file(settings.dataFile(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\r\none\r\n\n\ntwo");
    file.close();
    EXPECT_EQ(settings.loadList(name), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_FALSE(settings.saveList(QStringLiteral("no/such/folder.txt"), entries));
}

TEST_F(SettingsTest, ShippedFilesAreCopiedOnceIntoASeparateDataFolder) {
    QDir().mkpath(folder().applicationDir);
    for (const char* name : {"presets.trd", "genres.xml"}) {
        QFile shipped(QDir(folder().applicationDir).filePath(QLatin1String(name)));
        ASSERT_TRUE(shipped.open(QIODevice::WriteOnly));
        shipped.write(name);
    }
    QFile own(m_dir.filePath(QStringLiteral("genres.xml")));
    ASSERT_TRUE(own.open(QIODevice::WriteOnly));
    own.write("mine");
    own.close();
    const AppSettings settings(folder());
    EXPECT_EQ(readFile(settings.dataFile(QStringLiteral("presets.trd"))), "presets.trd");
    EXPECT_EQ(readFile(settings.dataFile(QStringLiteral("genres.xml"))), "mine");
}
