#pragma once

#include <QtGlobal>

/// True while a process with this id runs the same executable file as the calling process. A
/// process that has ended but was not yet collected by its parent does not run; a process that
/// the system lets nobody look into counts as running. Main thread.
bool isThisProgramRunning(qint64 pid);
