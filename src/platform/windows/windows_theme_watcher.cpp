#include "platform/windows_theme_watcher.h"

#include <QWinEventNotifier>

#include <windows.h>

using Scheme = WindowsThemeWatcher::Scheme;

namespace {
const QString kSystemKey =
    QStringLiteral("Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize");
constexpr const wchar_t* kValue = L"AppsUseLightTheme";

Scheme readScheme(HKEY key) {
    DWORD isLight = 0;
    DWORD bytes = sizeof isLight;
    if (RegGetValueW(key, nullptr, kValue, RRF_RT_REG_DWORD, nullptr, &isLight, &bytes) !=
        ERROR_SUCCESS)
        return Scheme::Unknown; // before Windows 10 1607
    return isLight != 0 ? Scheme::Light : Scheme::Dark;
}
} // namespace

struct WindowsThemeWatcher::Private {
    /// The system tells once for each time that it is asked to.
    [[nodiscard]] bool watch() const {
        return RegNotifyChangeKeyValue(key, FALSE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE) ==
               ERROR_SUCCESS;
    }

    HKEY key = nullptr;
    HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::unique_ptr<QWinEventNotifier> notifier;
    Scheme scheme = Scheme::Unknown;
};

WindowsThemeWatcher::WindowsThemeWatcher(const QString& source, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>()) {
    const QString name = source.isEmpty() ? kSystemKey : source;
    if (RegOpenKeyExW(HKEY_CURRENT_USER,
                      reinterpret_cast<const wchar_t*>(name.utf16()),
                      0,
                      KEY_NOTIFY | KEY_QUERY_VALUE,
                      &d->key) != ERROR_SUCCESS)
        return;
    // Asked first and read then: a change in between is told of.
    const bool isWatched = d->watch();
    d->scheme = readScheme(d->key);
    if (!isWatched)
        return;
    d->notifier = std::make_unique<QWinEventNotifier>(d->event);
    connect(d->notifier.get(), &QWinEventNotifier::activated, this, [this] {
        if (!d->watch())
            d->notifier->setEnabled(false);
        const Scheme now = readScheme(d->key);
        if (now == d->scheme)
            return;
        d->scheme = now;
        emit sig_schemeChanged(now);
    });
}

WindowsThemeWatcher::~WindowsThemeWatcher() {
    d->notifier.reset();
    if (d->key != nullptr)
        RegCloseKey(d->key);
    CloseHandle(d->event);
}

Scheme WindowsThemeWatcher::scheme() const {
    return d->scheme;
}
