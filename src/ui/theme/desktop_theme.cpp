#include "ui/theme/desktop_theme.h"

#include "platform/windows_theme_watcher.h"
#include "ui/theme/wavelark_style.h"

namespace {

using Scheme = WindowsThemeWatcher::Scheme;

void apply(Scheme scheme) {
    WavelarkStyle::setDesktopDark(
        scheme == Scheme::Unknown ? std::nullopt : std::optional<bool>(scheme == Scheme::Dark));
}

} // namespace

void followDesktopTheme(const WindowsThemeWatcher& watcher) {
    apply(watcher.scheme());
    QObject::connect(&watcher, &WindowsThemeWatcher::sig_schemeChanged, &watcher, &apply);
}
