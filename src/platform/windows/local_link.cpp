#include "platform/local_link.h"

QString localServerAddress(const QString& name) {
    return name;
}

bool isPeerSameUser(qintptr) {
    return true;
}
