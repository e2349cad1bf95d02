#pragma once

#include <QStringList>

/// The arguments of this process, program path first, with no character lost to a code page:
/// Windows reads the wide-character command line, Linux takes the bytes as UTF-8 and, where they
/// are not, in the locale's character set. Main thread.
QStringList programArguments(int argc, const char* const* argv);
