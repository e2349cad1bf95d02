#pragma once

#include <QStringList>

/// What main() does with the first argument before there is a window.
struct StartupSwitch {
    enum class Kind { None, Uninstall, Language };
    Kind kind = Kind::None;
    QString languageFile; ///< for Language; lower case, as the switch is read
};

/// "/uninstall" and "/lang=", in any letter case. A language that the user has already chosen
/// stays. Pure.
StartupSwitch decideStartupSwitch(const QStringList& arguments, bool isLanguageSet);

/// The text that a second instance hands to the first. Pure.
QByteArray forwardMessage(const QStringList& arguments);

/// What the decision to forward depends on.
struct ForwardInput {
    QStringList arguments;
    bool isSecondary = false;
    bool areMultipleInstancesAllowed = true;
};

/// True where this process hands its command line over and ends. Pure.
bool isForwarding(const ForwardInput& input);

/// False where the window stays hidden at start: exactly "/show=minimized", in this letter case.
/// Pure.
bool isWindowShownAtStart(const QStringList& arguments);
