#pragma once

/// Lets standard output and standard error reach the console that the program was started from.
/// Windows: a program with windows has no console of its own; where the streams go nowhere, the
/// console of the parent process takes them, and a pipe or file that the parent has set up stays.
/// Linux: nothing to do. To be called first of all, on the main thread.
void attachParentConsole();
