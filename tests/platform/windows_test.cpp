#include "platform/program_arguments.h"
#include "platform/registry_guard.h"
#include "platform/special_folders.h"
#include "platform/user_name.h"
#include "platform/windows_theme_watcher.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <windows.h>

namespace {
constexpr const wchar_t* kTestRoot = L"Software\\Wavelark-Tests";

LSTATUS createKey(const wchar_t* name) {
    HKEY key = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr);
    if (key != nullptr)
        RegCloseKey(key);
    return status;
}

bool keyExists(const wchar_t* name) {
    HKEY key = nullptr;
    const bool isThere = RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_READ, &key) == ERROR_SUCCESS;
    if (key != nullptr)
        RegCloseKey(key);
    return isThere;
}

void setTheme(DWORD isLight) {
    RegSetKeyValueW(
        HKEY_CURRENT_USER, kTestRoot, L"AppsUseLightTheme", REG_DWORD, &isLight, sizeof isLight);
}

/// A key of this test, gone again at its end.
class WindowsPlatform : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(createKey(kTestRoot), ERROR_SUCCESS); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestRoot); }
};
} // namespace

TEST_F(WindowsPlatform, RegistryGuardRefusesTheToolkitsKeys) {
    // Before: the same names are let through, so that a refusal below is the guard's.
    ASSERT_EQ(createKey(L"Software\\Wavelark-Tests\\Trolltech before"), ERROR_SUCCESS);
    EXPECT_GE(installRegistryGuard(), 2); // this program and the toolkit's core
    EXPECT_EQ(installRegistryGuard(), 0);

    const struct {
        const wchar_t* name;
        LSTATUS expected;
    } cases[] = {
        {L"Software\\Wavelark-Tests\\Trolltech", 1},
        {L"Software\\Wavelark-Tests\\OrganizationDefaults\\Trolltech\\Cache", 1},
        {L"Software\\Wavelark-Tests\\xTrolltechx", 1},
        {L"Software\\Wavelark-Tests\\trolltech", ERROR_SUCCESS}, // the letter case counts
        {L"Software\\Wavelark-Tests\\Other", ERROR_SUCCESS},
    };
    for (const auto& c : cases) {
        const bool wasThere = keyExists(c.name);
        EXPECT_EQ(createKey(c.name), c.expected) << QString::fromWCharArray(c.name).toStdString();
        EXPECT_EQ(keyExists(c.name), c.expected == ERROR_SUCCESS || wasThere);
    }
    // The toolkit's own writes take the same way.
    for (const auto& [group, isWritten] : {std::pair{QStringLiteral("Trolltech Q"), false},
                                           std::pair{QStringLiteral("Toolkit"), true}}) {
        QSettings settings(QStringLiteral("HKEY_CURRENT_USER\\Software\\Wavelark-Tests\\") + group,
                           QSettings::NativeFormat);
        settings.setValue(QStringLiteral("value"), 1);
        settings.sync();
        const std::wstring name =
            (QStringLiteral("Software\\Wavelark-Tests\\") + group).toStdWString();
        EXPECT_EQ(keyExists(name.c_str()), isWritten) << group.toStdString();
    }
}

TEST_F(WindowsPlatform, ThemeIsReadAndWatched) {
    const QString source = QStringLiteral("Software\\Wavelark-Tests");
    EXPECT_EQ(WindowsThemeWatcher(source).scheme(), WindowsThemeWatcher::Scheme::Unknown);
    setTheme(1);
    WindowsThemeWatcher watcher(source);
    EXPECT_EQ(watcher.scheme(), WindowsThemeWatcher::Scheme::Light);
    QSignalSpy changed(&watcher, &WindowsThemeWatcher::sig_schemeChanged);
    for (const DWORD isLight : {DWORD{0}, DWORD{1}}) { // the second change is told of as well
        setTheme(isLight);
        ASSERT_TRUE(changed.wait(10000));
        EXPECT_EQ(watcher.scheme(),
                  isLight != 0 ? WindowsThemeWatcher::Scheme::Light
                               : WindowsThemeWatcher::Scheme::Dark);
    }
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(WindowsPlatform, FoldersAndUserAreKnown) {
    ASSERT_EQ(programFolders().folders.size(), 1);
    EXPECT_TRUE(QDir(programFolders().folders.first()).exists());
    EXPECT_FALSE(programFolders().folders.first().contains(QLatin1Char('/')));
    EXPECT_TRUE(QDir::isAbsolutePath(musicFolder()));
    const QString user = userName();
    EXPECT_FALSE(user.isEmpty());
    // from the system, not from the environment
    const QByteArray before = qgetenv("USERNAME");
    qputenv("USERNAME", "somebody-else");
    EXPECT_EQ(userName(), user);
    qputenv("USERNAME", before);
    EXPECT_FALSE(programArguments(0, nullptr).isEmpty());
}

/// A path longer than the 260 characters of old.
TEST_F(WindowsPlatform, LongPathsAreWritten) {
    const QTemporaryDir folder;
    const QString deep = folder.path() + QLatin1Char('/') +
                         QStringList(QVector<QString>(3, QString(120, QLatin1Char('w'))).toList())
                             .join(QLatin1Char('/'));
    ASSERT_TRUE(QDir().mkpath(deep));
    QFile file(deep + QStringLiteral("/Ärtist – Söng.mp3"));
    ASSERT_GT(file.fileName().size(), 360);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << file.errorString().toStdString();
    EXPECT_EQ(file.write("abc"), 3);
    file.close();
    EXPECT_TRUE(file.rename(deep + QStringLiteral("/two.mp3")));
    EXPECT_EQ(QFile(deep + QStringLiteral("/two.mp3")).size(), 3);
}
