#pragma once

class QLockFile;

/// Takes a lock file that guards a data file of ours, whose holders need milliseconds. Waits at
/// most five seconds. False: another process keeps it, or the folder cannot be written.
/// Any thread that may wait.
[[nodiscard]] bool takeFileLock(QLockFile& lock);
