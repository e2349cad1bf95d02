#pragma once

#include <QByteArray>

/// What the environment says about a display. A plain value; empty: not set.
struct DisplayEnvironment {
    QByteArray platform;        ///< QT_QPA_PLATFORM
    QByteArray x11;             ///< DISPLAY
    QByteArray wayland;         ///< WAYLAND_DISPLAY
    bool isAlwaysThere = false; ///< a system whose windows need no variable
};

/// True where no window can be shown, so that the program has to run without one. Where a person
/// has chosen a platform, that is what is used. Pure.
bool mustRunWithoutWindow(const DisplayEnvironment& environment);
