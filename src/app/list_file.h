#pragma once

#include <QStringList>

/// One entry per line, UTF-8. A missing file is an empty list; empty lines are skipped. Any thread.
QStringList loadListFile(const QString& path);

/// Replaces the file in one step. False where it cannot be written: logged, the old file stays.
bool saveListFile(const QString& path, const QStringList& entries);
