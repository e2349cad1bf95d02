#include "platform/user_name.h"

#include <QByteArray>

#include <pwd.h>
#include <unistd.h>

#include <array>

QString userName() {
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_name != nullptr)
        return QString::fromLocal8Bit(found->pw_name);
    const QByteArray user = qgetenv("USER");
    return QString::fromLocal8Bit(user.isEmpty() ? qgetenv("LOGNAME") : user);
}
