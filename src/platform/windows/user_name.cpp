#include "platform/user_name.h"

#include <windows.h>

#include <array>

QString userName() {
    std::array<wchar_t, 257> name{}; // UNLEN + 1
    DWORD length = static_cast<DWORD>(name.size());
    if (GetUserNameW(name.data(), &length))
        return QString::fromWCharArray(name.data());
    return qEnvironmentVariable("USERNAME");
}
