#include "app/instance_name.h"

#include "platform/user_name.h"

#include <QCoreApplication>
#include <QCryptographicHash>

InstanceIdentity currentIdentity(const QStringList& userData) {
    InstanceIdentity identity;
    identity.applicationName = QCoreApplication::applicationName();
    identity.organizationName = QCoreApplication::organizationName();
    identity.organizationDomain = QCoreApplication::organizationDomain();
    identity.userData = userData;
    identity.applicationVersion = QCoreApplication::applicationVersion();
    identity.applicationFilePath = QCoreApplication::applicationFilePath();
    identity.userName = userName();
    return identity;
}

QString blockServerName(const InstanceIdentity& identity, int options) {
    QCryptographicHash digest(QCryptographicHash::Sha256);
    digest.addData(QByteArrayLiteral("SingleApplication"));
    digest.addData(identity.applicationName.toUtf8());
    digest.addData(identity.organizationName.toUtf8());
    digest.addData(identity.organizationDomain.toUtf8());
    if (!identity.userData.isEmpty())
        digest.addData(identity.userData.join(QString()).toUtf8());
    if ((options & InstanceOption::kWithoutVersion) == 0)
        digest.addData(identity.applicationVersion.toUtf8());
    if ((options & InstanceOption::kWithoutPath) == 0)
        digest.addData(identity.applicationFilePath.toLower().toUtf8());
    if ((options & InstanceOption::kPerUser) != 0)
        digest.addData(identity.userName.toUtf8());
    return QString::fromLatin1(digest.result().toBase64().replace('/', '_'));
}
