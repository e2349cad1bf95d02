#pragma once

#include <QString>

/// The line without what must not stand in a log: user info of URLs, and the values of passwords,
/// tokens and session keys, in queries ("&sk=..."), in "name=value" and "name: value" texts and in
/// authorisation headers. Pure; any thread.
QString scrubCredentials(const QString& line);
