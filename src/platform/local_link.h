#pragma once

#include <QString>
#include <QtGlobal>

/// Where the local socket of this name lives, in the form that QLocalServer and QLocalSocket take.
/// The same for every process of a user, however it was started (a task service hands on none of
/// the session's environment). Any thread.
QString localServerAddress(const QString& name);

/// True where the other end of a connected local socket belongs to the user of this process. Any
/// thread. Windows: always true, the pipe's access list has already decided.
bool isPeerSameUser(qintptr socketDescriptor);
