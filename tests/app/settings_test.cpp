#include "app/settings_fixture.h"
#include "app/settings_table.h"

#include <QSettings>

#include <gtest/gtest.h>

namespace {
QString textOf(const char* latin1) {
    return QString::fromLatin1(latin1);
}

/// Another value than the fresh one, with characters that a file must escape.
QString otherText(const char* key) {
    return QStringLiteral("\u00e4 \\ %1, \"x\"; @=").arg(textOf(key));
}
} // namespace

TEST_F(SettingsTest, EveryPreferenceReadsItsDefaultFromAnEmptyFolder) {
    const AppSettings settings(folder());
    for (const auto& row : kBoolSettings)
        EXPECT_EQ((settings.*row.setting)(), row.fresh) << row.key;
    for (const auto& row : kIntSettings)
        EXPECT_EQ((settings.*row.setting)(), row.fresh) << row.key;
    for (const auto& row : kTextSettings)
        EXPECT_EQ((settings.*row.setting)(), textOf(row.fresh)) << row.key;
}

TEST_F(SettingsTest, EveryPreferenceSurvivesAReopenUnderItsOwnKey) {
    {
        AppSettings settings(folder());
        for (const auto& row : kBoolSettings)
            (settings.*row.setting).set(!row.fresh);
        for (const auto& row : kIntSettings)
            (settings.*row.setting).set(row.fresh + 7);
        for (const auto& row : kTextSettings)
            (settings.*row.setting).set(otherText(row.key));
    }
    const QSettings file(iniPath(), QSettings::IniFormat);
    const AppSettings settings(folder());
    for (const auto& row : kBoolSettings) {
        EXPECT_EQ((settings.*row.setting)(), !row.fresh) << row.key;
        EXPECT_EQ(file.value(textOf(row.key)).toString(),
                  row.fresh ? QStringLiteral("false") : QStringLiteral("true"))
            << row.key;
    }
    for (const auto& row : kIntSettings) {
        EXPECT_EQ((settings.*row.setting)(), row.fresh + 7) << row.key;
        EXPECT_EQ(file.value(textOf(row.key)).toString(), QString::number(row.fresh + 7));
    }
    for (const auto& row : kTextSettings) {
        EXPECT_EQ((settings.*row.setting)(), otherText(row.key)) << row.key;
        EXPECT_EQ(file.value(textOf(row.key)).toString(), otherText(row.key)) << row.key;
    }
}

TEST_F(SettingsTest, ValuesThatDoNotConvertReadAsFalseOrZero) {
    writeIni("[General]\nVolume=loud\nRetries=3.5\nMiniMode=yes\nSkinMode=0\nAlwaysOnTop=FALSE\n"
             "StartHidden=\nPosition=(1, 2)\n");
    const AppSettings settings(folder());
    EXPECT_EQ(settings.Volume(), 0);
    EXPECT_EQ(settings.Retries(), 0);
    EXPECT_TRUE(settings.MiniMode());
    EXPECT_FALSE(settings.SkinMode());
    EXPECT_FALSE(settings.AlwaysOnTop());
    EXPECT_FALSE(settings.StartHidden());
    // A comma without quotes, as a person types it, does not lose the value.
    EXPECT_EQ(settings.Position(), QStringLiteral("(1,2)"));
}

TEST_F(SettingsTest, DefaultsUnderUnreadKeysDoNotReachTheirGetters) {
    writeIni("[General]\nAutoChangesHttps=true\nVolumeFromWindowsTray=true\n");
    AppSettings settings(folder());
    EXPECT_FALSE(settings.AutoChangeHttps());
    EXPECT_FALSE(settings.SetVolumeFromWindowsTray());
    EXPECT_EQ(settings.AutoChangesHttps.defaultText(), QStringLiteral("false"));
    EXPECT_EQ(settings.VolumeFromWindowsTray.defaultText(), QStringLiteral("false"));
    settings.AutoChangeHttps.set(true);
    EXPECT_TRUE(settings.AutoChangeHttps());
}

TEST_F(SettingsTest, IndexedAndGroupedKeysHaveTheirPatterns) {
    const QByteArray geometry = QByteArray::fromHex("01d9d0cb00ff0a0d22");
    {
        AppSettings settings(folder());
        settings.setColumnWidth(QStringLiteral("TreeFavorites"), 3, 120);
        settings.setEqPresetForStation(QStringLiteral("77"), QStringLiteral("Rock"));
        settings.setEqPresetIdForStation(QStringLiteral("77"), 4000000000U);
        settings.setEqPreampForStation(QStringLiteral("77"), QStringLiteral("-3"));
        settings.setEqEnabledForStation(QStringLiteral("77"), true);
        settings.setMainButtonOn(2, true);
        settings.setHotkey(5, QStringLiteral("Ctrl+Alt+P"));
        settings.setShortcut(6, QStringLiteral("F5"));
        settings.setTreeShortcut(7, QStringLiteral("Del"));
        settings.SaveWindowGeometry(QStringLiteral("Main"), geometry);
        settings.SetTreeGroupColumn(QStringLiteral("TreeSearchStations"), 4);
    }
    const AppSettings settings(folder());
    EXPECT_EQ(settings.columnWidth(QStringLiteral("TreeFavorites"), 3), 120);
    EXPECT_EQ(settings.eqPresetIdForStation(QStringLiteral("77")), 4000000000U);
    EXPECT_EQ(settings.eqPresetForStation(QStringLiteral("77")), QStringLiteral("Rock"));
    EXPECT_EQ(settings.eqPreampForStation(QStringLiteral("77")), QStringLiteral("-3"));
    EXPECT_TRUE(settings.isEqEnabledForStation(QStringLiteral("77")));
    EXPECT_TRUE(settings.isMainButtonOn(2));
    EXPECT_EQ(settings.RestoreWindowGeometry(QStringLiteral("Main")), geometry);
    EXPECT_EQ(settings.GetTreeGroupColumn(QStringLiteral("TreeSearchStations")), 4);

    const QSettings file(iniPath(), QSettings::IniFormat);
    for (const char* key : {"ColWidth_TreeFavorites3",
                            "EQPresetForStation_77",
                            "EQPresetForStationID_77",
                            "EQPreampForStation_77",
                            "EQEnabledForStation_77",
                            "MainButtons/Button_2",
                            "Hotkeys/Hotkey_5",
                            "Shortcuts/Shortcut_6",
                            "TreeShortcuts/Shortcut_7",
                            "WindowMain",
                            "TreeSearchGroupColumn"})
        EXPECT_TRUE(file.contains(textOf(key))) << key;
}

TEST_F(SettingsTest, UnknownTreesAreLoggedWithTheFunctionsName) {
    AppSettings settings(folder());
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(settings.GetTreeGroupColumn(QStringLiteral("TreeOfLife")), 0);
    settings.SetTreeGroupColumn(QStringLiteral("TreeOfLife"), 1);
    const std::string log = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("AppSettings::GetTreeGroupColumn"), std::string::npos) << log;
    EXPECT_NE(log.find("AppSettings::SetTreeGroupColumn"), std::string::npos) << log;
}
