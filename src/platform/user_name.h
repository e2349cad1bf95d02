#pragma once

#include <QString>

/// The name of the user this process runs as: from the system, else from the environment
/// (USERNAME on Windows, USER and LOGNAME on Linux), else empty. Any thread.
QString userName();
