#pragma once

#include <QString>
#include <QStringList>

/// Bits of the single-instance guard's options.
namespace InstanceOption {
constexpr int kPerUser = 1;        ///< the name includes the user's
constexpr int kSystemWide = 2;     ///< all users meet
constexpr int kNotifyPrimary = 4;  ///< a secondary tells the primary that it started
constexpr int kWithoutVersion = 8; ///< versions meet
constexpr int kWithoutPath = 16;   ///< copies in different folders meet
} // namespace InstanceOption

/// What makes two processes instances of the same program.
struct InstanceIdentity {
    QString applicationName;
    QString organizationName;
    QString organizationDomain;
    QStringList userData;
    QString applicationVersion;
    QString applicationFilePath;
    QString userName;
};

/// The identity of this process. The application object must exist. Main thread.
InstanceIdentity currentIdentity(const QStringList& userData);

/// The name of the shared block and of the local socket: SHA-256 over the identity in Base64, with
/// "_" for "/". Pure.
QString blockServerName(const InstanceIdentity& identity, int options);
