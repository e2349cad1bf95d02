#pragma once

class QFile;

/// Waits until everything written to an open, unbuffered file is on the disk, its length included.
/// Any thread; blocks. False: the system's error stays readable as usual (errno, GetLastError).
bool syncFile(const QFile& file);
