#include "platform/file_sync.h"

#include <QFile>

#include <io.h>

bool syncFile(const QFile& file) {
    const int handle = file.handle();
    return handle >= 0 && ::_commit(handle) == 0;
}
