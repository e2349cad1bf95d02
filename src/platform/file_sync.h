#pragma once

class QByteArray;
class QFile;
class QString;

/// Waits until everything written to an open, unbuffered file is on the disk, its length included.
/// Any thread; blocks. False: the system's error stays readable as usual (errno, GetLastError).
bool syncFile(const QFile& file);

/// Gives a file the name of another one in the same folder, whose place it takes in one step: at
/// any time one of the two is there under that name. Neither may be open on Windows. Any thread;
/// blocks. False: nothing has changed; the system's error stays readable.
bool moveOver(const QString& from, const QString& to);

/// Adds bytes to the end of a file, which is made where it is not there: in one piece, whatever
/// other processes add at the same moment. Any thread; blocks. False: not all of them were written.
bool appendTo(const QString& path, const QByteArray& bytes);
