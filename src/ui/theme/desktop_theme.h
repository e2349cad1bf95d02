#pragma once

class WindowsThemeWatcher;

/// Where the user has chosen no theme, the window is light or dark as the desktop asks, now and
/// whenever that changes. GUI thread, after the application object exists; for as long as the
/// watcher lives.
void followDesktopTheme(const WindowsThemeWatcher& watcher);
