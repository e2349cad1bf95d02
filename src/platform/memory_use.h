#pragma once

/// Suits the system's memory allocator to a program that runs for weeks and deals with a little
/// audio a few times a second: what it needs again at once stays at hand, and big buffers go back
/// to the system as soon as they are freed. Linux: glibc's mallopt(). Windows: nothing needs to be
/// done. Thread: main, before any other is started.
void tuneMemoryUse();
