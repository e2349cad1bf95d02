#include "platform/file_sync.h"
#include "platform/keep_awake.h"
#include "platform/named_mapping.h"
#include "platform/power.h"
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
#include <QVector>

#include <gtest/gtest.h>
// The first declares what the second needs.
// clang-format off
#include <windows.h>
#include <powrprof.h>
// clang-format on

// The entries of this program's import table, as the linker names them.
extern "C" {
extern decltype(GetUserNameW)* __imp_GetUserNameW;                       // NOLINT
extern decltype(InitiateSystemShutdownW)* __imp_InitiateSystemShutdownW; // NOLINT
extern decltype(SetSuspendState)* __imp_SetSuspendState;                 // NOLINT
}

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

/// One of this program's imports, replaced for as long as the object lives.
template <typename Function>
class ReplacedImport {
  public:
    ReplacedImport(Function** import, Function* with) : m_import(import), m_real(*import) {
        set(with);
    }
    ~ReplacedImport() { set(m_real); }
    Q_DISABLE_COPY_MOVE(ReplacedImport)

  private:
    void set(Function* function) {
        DWORD before = 0;
        VirtualProtect(m_import, sizeof *m_import, PAGE_READWRITE, &before);
        *m_import = function;
        VirtualProtect(m_import, sizeof *m_import, before, &before);
    }

    Function** m_import;
    Function* m_real;
};

bool hasShutdownPrivilege() {
    HANDLE token = nullptr;
    PRIVILEGE_SET wanted{1, PRIVILEGE_SET_ALL_NECESSARY, {}};
    BOOL isThere = FALSE;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY | TOKEN_DUPLICATE, &token);
    LookupPrivilegeValueW(nullptr, L"SeShutdownPrivilege", &wanted.Privilege[0].Luid);
    HANDLE asked = nullptr;
    DuplicateToken(token, SecurityIdentification, &asked);
    PrivilegeCheck(asked, &wanted, &isThere);
    CloseHandle(asked);
    CloseHandle(token);
    return isThere != FALSE;
}

/// What the system was asked for last, and whether with the right to it.
struct {
    QString what;
    bool isAllowed = false;
} asked;

BOOL WINAPI
noShutdown(LPWSTR machine, LPWSTR text, DWORD seconds, BOOL isForced, BOOL isRestarted) {
    asked = {QStringLiteral("shutdown %1 %2 %3 %4")
                 .arg(seconds)
                 .arg(isForced)
                 .arg(isRestarted)
                 .arg(machine == nullptr && text != nullptr),
             hasShutdownPrivilege()};
    return TRUE;
}

BOOLEAN WINAPI noSuspend(BOOLEAN isHibernated, BOOLEAN isForced, BOOLEAN isWakeBarred) {
    asked = {QStringLiteral("suspend %1 %2 %3").arg(isHibernated).arg(isForced).arg(isWakeBarred),
             hasShutdownPrivilege()};
    return TRUE;
}

BOOL WINAPI noUserName(LPWSTR, LPDWORD) {
    return FALSE;
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
    {
        const ReplacedImport name(&__imp_GetUserNameW, noUserName);
        EXPECT_EQ(userName(), QStringLiteral("somebody-else"));
    }
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

/// The tagged copy of a recording takes its place, also by a path longer than the 260 characters of
/// old.
TEST_F(WindowsPlatform, AFileTakesAnothersPlace) {
    const QTemporaryDir folder;
    const QString deep =
        folder.path() +
        QString(QStringLiteral("/%1").arg(QString(120, QLatin1Char('w')))).repeated(3);
    for (const QString& place : {folder.path(), deep}) {
        ASSERT_TRUE(QDir().mkpath(place));
        const QString path = place + QStringLiteral("/S\u00F6ng.mp3");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QFile copy(path + QStringLiteral(".new"));
        ASSERT_TRUE(copy.open(QIODevice::WriteOnly));
        copy.write("tagged");
        copy.close();
        EXPECT_FALSE(moveOver(copy.fileName(), path)) << "over a file that somebody has open";
        EXPECT_TRUE(copy.exists());
        file.close();
        EXPECT_TRUE(moveOver(copy.fileName(), path)) << GetLastError();
        EXPECT_EQ(QFile(path).size(), 6);
        EXPECT_FALSE(copy.exists());
        EXPECT_FALSE(moveOver(copy.fileName(), path));
    }
}

/// Nothing is shut down: what the system would be asked for is caught.
TEST_F(WindowsPlatform, PowerIsAskedForWithItsPrivilege) {
    const ReplacedImport shutdown(&__imp_InitiateSystemShutdownW, noShutdown);
    const ReplacedImport suspend(&__imp_SetSuspendState, noSuspend);
    const bool isAllowedBefore = hasShutdownPrivilege();
    const struct {
        PowerAction action;
        const char* expected;
    } cases[] = {
        {PowerAction::Shutdown, "shutdown 30 0 0 1"},
        {PowerAction::Sleep, "suspend 0 0 0"},
        {PowerAction::Hibernate, "suspend 1 0 0"},
    };
    for (const auto& c : cases) {
        asked = {};
        EXPECT_TRUE(requestPower(c.action)) << c.expected;
        EXPECT_EQ(asked.what, QLatin1String(c.expected));
        EXPECT_TRUE(asked.isAllowed) << c.expected;
        EXPECT_EQ(hasShutdownPrivilege(), isAllowedBefore);
    }
}
