#pragma once

#include "app/application_proxy.h"
#include "ui/meter_kind.h"
#include "ui/recording_preferences.h"
#include "ui/theme/theme.h"
#include "ui/tray_options.h"

#include <QString>

/// What the settings dialog shows and changes. A plain value.
struct Preferences {
    // General
    QString languageFile;
    ThemeChoice theme = ThemeChoice::System;
    bool isAutoPlaying = false;
    bool isAskingOnExit = true; ///< while recording
    bool areMultipleInstancesAllowed = true;
    bool isLogFileKept = true;
    TrayOptions tray;

    // Playing
    int fadeInSeconds = 2;
    int fadeOutSeconds = 2;
    int bufferMs = 6000;
    int attempts = 2;         ///< to connect
    QString outputDevice;     ///< its name; empty: the system's default
    int patienceMinutes = 10; ///< a lost station is waited for
    QString recordingDevice;  ///< its name; empty: the system's default
    MeterKind meter = MeterKind::Level;

    RecordingPreferences recording;

    // Network
    ProxySettings proxy;
};

/// What keeps the preferences from being taken over, in one sentence for the user; empty: nothing
/// does. Looks at no disk. Pure.
QString preferencesFault(const Preferences& preferences);

/// True where something differs that only the next start of the program takes notice of. Pure.
bool isRestartNeeded(const Preferences& before, const Preferences& after);
