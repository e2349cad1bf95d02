#pragma once

#include <QtGlobal>

/// What tests need of the system that Qt does not give; one implementation each for Linux and
/// Windows beside this.
namespace test_system {

/// The connection of this TCP socket ends with RST instead of FIN when it is closed.
void makeCloseReset(qintptr socketDescriptor);

/// Bytes of the standard input as they are, as soon as there are any. 0 at the end, negative on
/// failure.
qint64 readStandardInput(char* data, unsigned size);

} // namespace test_system
