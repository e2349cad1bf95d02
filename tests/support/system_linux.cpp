#include "support/system.h"

#include <sys/socket.h>
#include <unistd.h>

namespace test_system {

void makeCloseReset(qintptr socketDescriptor) {
    const linger now{1, 0};
    setsockopt(static_cast<int>(socketDescriptor), SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

qint64 readStandardInput(char* data, unsigned size) {
    return ::read(STDIN_FILENO, data, size);
}

} // namespace test_system
