#pragma once

#include <QString>

/// Names the program to Qt: organisation, domain, application, version. Everything that is named
/// after the program (settings file, single-instance link) depends on it, so main() calls it before
/// it makes the application object. Main thread.
void setApplicationIdentity();

/// "2.15.901"
QString applicationVersion();
