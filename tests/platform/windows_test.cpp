#include "platform/keep_awake.h"
#include "platform/named_mapping.h"
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
/// A key of this process: other tests run beside it.
QString testRoot() {
    return QStringLiteral("Software\\Wavelark-Tests-%1").arg(GetCurrentProcessId());
}

const wchar_t* wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

/// Not inline: the compiler takes the address of an import for a constant and would go on using the
/// one from before the guard.
[[gnu::noinline]] LSTATUS createKey(const QString& name) {
    HKEY key = nullptr;
    const LSTATUS status = RegCreateKeyExW(
        HKEY_CURRENT_USER, wide(name), 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr);
    if (key != nullptr)
        RegCloseKey(key);
    return status;
}

bool keyExists(const QString& name) {
    HKEY key = nullptr;
    const bool isThere =
        RegOpenKeyExW(HKEY_CURRENT_USER, wide(name), 0, KEY_READ, &key) == ERROR_SUCCESS;
    if (key != nullptr)
        RegCloseKey(key);
    return isThere;
}

void setTheme(DWORD isLight) {
    RegSetKeyValueW(HKEY_CURRENT_USER,
                    wide(testRoot()),
                    L"AppsUseLightTheme",
                    REG_DWORD,
                    &isLight,
                    sizeof isLight);
}

/// A key of this test, gone again at its end.
class WindowsPlatform : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(createKey(testRoot()), ERROR_SUCCESS); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, wide(testRoot())); }
};
} // namespace

TEST_F(WindowsPlatform, RegistryGuardRefusesTheToolkitsKeys) {
    // Before: the same names are let through, so that a refusal below is the guard's.
    ASSERT_EQ(createKey(testRoot() + QStringLiteral("\\Trolltech before")), ERROR_SUCCESS);
    EXPECT_GE(installRegistryGuard(), 2); // this program and the toolkit's core
    EXPECT_EQ(installRegistryGuard(), 0);

    const struct {
        const char* name;
        LSTATUS expected;
    } cases[] = {
        {"Trolltech", 1},
        {"OrganizationDefaults\\Trolltech\\Cache", 1},
        {"xTrolltechx", 1},
        {"TROLLTECH", ERROR_SUCCESS}, // the letter case counts
        {"Other", ERROR_SUCCESS},
    };
    for (const auto& c : cases) {
        const QString name = testRoot() + QLatin1Char('\\') + QLatin1String(c.name);
        EXPECT_EQ(createKey(name), c.expected) << c.name;
        EXPECT_EQ(keyExists(name), c.expected == ERROR_SUCCESS) << c.name;
    }
    // The toolkit's own writes take the same way.
    for (const auto& [group, isWritten] : {std::pair{QStringLiteral("Trolltech Q"), false},
                                           std::pair{QStringLiteral("Toolkit"), true}}) {
        const QString name = testRoot() + QLatin1Char('\\') + group;
        QSettings settings(QStringLiteral("HKEY_CURRENT_USER\\") + name, QSettings::NativeFormat);
        settings.setValue(QStringLiteral("value"), 1);
        settings.sync();
        EXPECT_EQ(keyExists(name), isWritten) << group.toStdString();
    }
}

TEST_F(WindowsPlatform, ThemeIsReadAndWatched) {
    const QString source = testRoot();
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

TEST_F(WindowsPlatform, KeepAwakeAsksTheSystem) {
    const auto isAsked = [] { // each call answers with what was asked for before it
        const EXECUTION_STATE state = SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED);
        SetThreadExecutionState(state);
        return (state & ES_CONTINUOUS) != 0 && (state & ES_SYSTEM_REQUIRED) != 0;
    };
    SetThreadExecutionState(ES_CONTINUOUS);
    {
        KeepAwake awake;
        EXPECT_FALSE(isAsked());
        awake.setActive(true);
        EXPECT_TRUE(isAsked());
        awake.setActive(false);
        EXPECT_FALSE(isAsked());
        awake.setActive(true);
    }
    EXPECT_FALSE(isAsked());
}

/// The recording buffer has a name in the system, backed by its paging file.
TEST_F(WindowsPlatform, MappingIsSharedByItsName) {
    auto made = NamedMapping::create(QStringLiteral("map_wavelark-test"), 100000);
    ASSERT_TRUE(made) << made.error().toStdString();
    made.value().data()[99999] = 'x';
    const HANDLE other = OpenFileMappingW(FILE_MAP_READ, FALSE, L"map_wavelark-test");
    ASSERT_NE(other, nullptr);
    const auto* const view =
        static_cast<const char*>(MapViewOfFile(other, FILE_MAP_READ, 0, 0, 100000));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view[99999], 'x');
    // a second one of the name would mix two stations
    EXPECT_FALSE(NamedMapping::create(QStringLiteral("map_wavelark-test"), 100000));
    UnmapViewOfFile(view);
    CloseHandle(other);
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
