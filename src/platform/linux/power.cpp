#include "platform/power.h"

#include <QProcess>
#include <QStandardPaths>

namespace {
QString verb(PowerAction action) {
    switch (action) {
    case PowerAction::Shutdown:
        return QStringLiteral("poweroff");
    case PowerAction::Sleep:
        return QStringLiteral("suspend");
    case PowerAction::Hibernate:
        break;
    }
    return QStringLiteral("hibernate");
}
} // namespace

Status requestPower(PowerAction action) {
    // The login manager decides whether this user may do it.
    const QString program = QStandardPaths::findExecutable(QStringLiteral("systemctl"));
    if (program.isEmpty())
        return Error{QStringLiteral("systemctl is not installed")};
    if (!QProcess::startDetached(program, {verb(action)}))
        return Error{QStringLiteral("%1 cannot be started").arg(program)};
    return Done{};
}
