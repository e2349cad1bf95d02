#pragma once

/// How the program uses the tray. A plain value.
struct TrayOptions {
    bool isShown = true;             ///< ShowTrayIcon: there is an icon at all
    bool isPersistent = true;        ///< PersistentTrayIcon: also while the window is to be seen
    bool isHiddenOnClose = false;    ///< TrayOnClose: closing the window hides it
    bool isHiddenOnMinimize = false; ///< TrayOnMinimize
    bool isHiddenAtStart = false;    ///< MinimizeToTrayOnStartUp
    bool isMutedByClick = true;      ///< TrayClickMuteVolume: the middle button mutes
    bool hasPopups = true;           ///< not DisablePopups: messages while the window is hidden
    bool isToolTipUpdated = true;    ///< UpdateTrayToolTip: it tells station and title
};
