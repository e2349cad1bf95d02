#pragma once

#include "app/command_line.h"

#include <QString>
#include <QStringList>

class AppSettings;

// What main() does around the window. GUI thread, with the application object.

/// False where nobody can see a window or answer a question.
bool hasDisplay();

/// "/uninstall": asks, deletes, tells. True: the command line was that, and the process ends.
bool carryOutUninstall(const QStringList& arguments);

/// "/lang=": stores the language unless the user has chosen one.
void storeLanguageSwitch(AppSettings& settings, const QStringList& arguments);

/// Says why the program cannot run, in a box or on the console; returns the exit code.
int reportFatal(const QString& text);

/// Puts the computer to sleep or shuts it down; the latter is asked about. Empty: done or declined;
/// else why it was not.
QString performPowerAction(EndAction action);
