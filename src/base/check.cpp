#include "base/check.h"

#include "base/log.h"

bool checkFailed(const char* condition, const char* file, int line) {
    qCCritical(lcBase, "check failed condition=%s file=%s line=%d", condition, file, line);
#ifndef NDEBUG
    qFatal("check failed");
#endif
    return false;
}
