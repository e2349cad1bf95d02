#include "platform/local_link.h"

#include <sys/socket.h>
#include <unistd.h>

QString localServerAddress(const QString& name) {
    return QStringLiteral("/tmp/") + name;
}

bool isPeerSameUser(qintptr socketDescriptor) {
    ucred peer{};
    socklen_t length = sizeof peer;
    if (getsockopt(static_cast<int>(socketDescriptor), SOL_SOCKET, SO_PEERCRED, &peer, &length) !=
        0)
        return false;
    return peer.uid == geteuid();
}
