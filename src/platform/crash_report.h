#pragma once

#include <QString>

/// From now on an unhandled fault (a bad access, an abort, an exception that nobody caught) adds
/// a report to the file before the process ends as it would have ended: time (UTC), version, what
/// happened, the addresses of the stack, each with its module. What the report is written with was
/// made ready here; the handler itself takes no lock and allocates nothing.
/// `path`: of the file, in an existing folder; it is begun anew here once it has more than 256 KB.
/// Main thread, once; a second call changes path and version.
void installCrashReport(const QString& path, const QString& version);
