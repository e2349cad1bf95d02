#pragma once

#include <QStringList>

/// What tests need of the system that Qt does not give; one implementation each for Linux and
/// Windows beside this.
namespace test_system {

/// The connection of this TCP socket ends with RST instead of FIN when it is closed.
void makeCloseReset(qintptr socketDescriptor);

/// Bytes of the standard input as they are, as soon as there are any. 0 at the end, negative on
/// failure.
qint64 readStandardInput(char* data, unsigned size);

/// No line end of the standard streams is translated.
void makeStandardStreamsBinary();

/// The files of the libraries that a running process has loaded; empty where that cannot be seen.
QStringList loadedLibraries(qint64 processId);

/// Asks a process to end in order. False: it cannot be reached.
bool askToEnd(qint64 processId);

/// Threads of this process.
int threadCount();

/// What this process holds of the system: files, sockets, on Windows every kind of handle.
int openFiles();

} // namespace test_system
