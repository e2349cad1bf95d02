#include "platform/power.h"

#include <QString>

// The first declares what the second needs.
// clang-format off
#include <windows.h>
#include <powrprof.h>
// clang-format on

namespace {
/// The right to shut down, for as long as the object lives.
class ShutdownPrivilege {
  public:
    ShutdownPrivilege() {
        if (!OpenProcessToken(
                GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &m_token)) {
            m_error = GetLastError();
            return;
        }
        TOKEN_PRIVILEGES wanted{};
        wanted.PrivilegeCount = 1;
        wanted.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
        DWORD length = sizeof m_before;
        if (LookupPrivilegeValueW(nullptr, L"SeShutdownPrivilege", &wanted.Privileges[0].Luid))
            AdjustTokenPrivileges(m_token, FALSE, &wanted, sizeof wanted, &m_before, &length);
        m_error = GetLastError(); // also tells of a privilege that was not given
    }
    ~ShutdownPrivilege() {
        if (m_token == nullptr)
            return;
        AdjustTokenPrivileges(m_token, FALSE, &m_before, 0, nullptr, nullptr);
        CloseHandle(m_token);
    }
    ShutdownPrivilege(const ShutdownPrivilege&) = delete;
    ShutdownPrivilege& operator=(const ShutdownPrivilege&) = delete;

    [[nodiscard]] DWORD error() const { return m_error; }

  private:
    HANDLE m_token = nullptr;
    TOKEN_PRIVILEGES m_before{};
    DWORD m_error = ERROR_SUCCESS;
};

Error systemError(DWORD code) {
    return Error{QStringLiteral("error %1 of the system").arg(code)};
}
} // namespace

Status requestPower(PowerAction action) {
    const ShutdownPrivilege privilege;
    if (privilege.error() != ERROR_SUCCESS)
        return systemError(privilege.error());
    if (action != PowerAction::Shutdown) {
        if (!SetSuspendState(action == PowerAction::Hibernate, FALSE, FALSE))
            return systemError(GetLastError());
        return Done{};
    }
    wchar_t text[] = L"Shutting down the computer";
    // 30 seconds to save; other programs are asked, not forced.
    if (!InitiateSystemShutdownW(nullptr, text, 30, FALSE, FALSE))
        return systemError(GetLastError());
    return Done{};
}
