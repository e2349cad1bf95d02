#include "platform/keep_awake.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

struct KeepAwake::Private {
    void ask();

    bool isActive = false;
    QDBusUnixFileDescriptor lock; ///< the lock ends with its last copy
    std::unique_ptr<QDBusPendingCallWatcher> pending;
};

void KeepAwake::Private::ask() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.login1"),
                                       QStringLiteral("/org/freedesktop/login1"),
                                       QStringLiteral("org.freedesktop.login1.Manager"),
                                       QStringLiteral("Inhibit"));
    call << QStringLiteral("idle") << QStringLiteral("Wavelark")
         << QStringLiteral("A recording is running") << QStringLiteral("block");
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return;
    pending = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call));
    QObject::connect(
        pending.get(), &QDBusPendingCallWatcher::finished, pending.get(), [this](auto* watcher) {
            const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
            if (!reply.isError())
                lock = reply.value();
        });
}

KeepAwake::KeepAwake() : d(std::make_unique<Private>()) {}

KeepAwake::~KeepAwake() = default;

void KeepAwake::setActive(bool isActive) {
    if (d->isActive == isActive)
        return;
    d->isActive = isActive;
    if (isActive) {
        d->ask();
        return;
    }
    d->pending.reset(); // an answer still under way brings its lock to nobody
    d->lock = {};
}

bool KeepAwake::isActive() const {
    return d->isActive;
}
