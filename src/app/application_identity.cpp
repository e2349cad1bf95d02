#include "app/application_identity.h"

#include <QCoreApplication>

void setApplicationIdentity() {
    QCoreApplication::setOrganizationName(QStringLiteral("Brindlecove"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("www.brindlecove.example"));
    QCoreApplication::setApplicationName(QStringLiteral("Wavelark"));
    QCoreApplication::setApplicationVersion(applicationVersion());
}

QString applicationVersion() {
    return QStringLiteral("2.15.901");
}
