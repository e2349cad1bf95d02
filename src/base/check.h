#pragma once

/// A state that cannot come from outside data: fatal in debug builds and tests, logged in a
/// release, after which the caller takes its written fallback. Returns the condition, so that it
/// reads `if (!WL_CHECK(x)) return fallback;`.
#define WL_CHECK(condition)                                                                        \
    (static_cast<bool>(condition) || checkFailed(#condition, __FILE__, __LINE__))

/// Any thread. Returns false where it returns at all.
bool checkFailed(const char* condition, const char* file, int line);
