#include "platform/windows_theme_watcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFile>

using Scheme = WindowsThemeWatcher::Scheme;

// The settings portal: https://flatpak.github.io/xdg-desktop-portal (Settings, version 1).

namespace {
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kNamespace = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

Scheme schemeOf(const QVariant& value) {
    QVariant inner = value;
    while (inner.canConvert<QDBusVariant>()) // Read wraps its answer twice
        inner = inner.value<QDBusVariant>().variant();
    switch (inner.toUInt()) {
    case 1:
        return Scheme::Dark;
    case 2:
        return Scheme::Light;
    default:
        return Scheme::Unknown; // no preference
    }
}

/// Without it the D-Bus library would start a bus of its own for the session.
bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// Takes the portal's signal, for which D-Bus wants a slot.
class PortalListener final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PortalListener)

  public:
    PortalListener() = default;

  signals:
    void sig_scheme(WindowsThemeWatcher::Scheme scheme);

  public slots:
    void slot_settingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
        if (space == kNamespace && key == kKey)
            emit sig_scheme(schemeOf(value.variant()));
    }
};
} // namespace

struct WindowsThemeWatcher::Private {
    Scheme scheme = Scheme::Unknown;
    PortalListener listener;
    std::unique_ptr<QDBusPendingCallWatcher> pending;
};

WindowsThemeWatcher::WindowsThemeWatcher(const QString& source, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>()) {
    Q_UNUSED(source)
    if (!hasSessionBus())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    connect(&d->listener, &PortalListener::sig_scheme, this, [this](Scheme scheme) {
        if (scheme == d->scheme)
            return;
        d->scheme = scheme;
        emit sig_schemeChanged(scheme);
    });
    // No service name: naming one would wait for its owner to be looked up.
    bus.connect(QString(),
                kPath,
                kInterface,
                QStringLiteral("SettingChanged"),
                &d->listener,
                SLOT(slot_settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"),
                                       kPath,
                                       kInterface,
                                       QStringLiteral("Read"));
    call << kNamespace << kKey;
    d->pending = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call));
    connect(d->pending.get(), &QDBusPendingCallWatcher::finished, this, [this](auto* watcher) {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            emit d->listener.sig_scheme(schemeOf(reply.value().variant()));
    });
}

WindowsThemeWatcher::~WindowsThemeWatcher() = default;

Scheme WindowsThemeWatcher::scheme() const {
    return d->scheme;
}

#include "windows_theme_watcher.moc"
