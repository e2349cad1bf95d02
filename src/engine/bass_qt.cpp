#include "engine/bass_qt.h"

#include "base/log.h"
#include "engine/engine_events.h"

#include <QCoreApplication>

namespace BASS {

void BassQt::Notify(int code, const QVariant& payload) {
    if (code == kNotifyPostEvent)
        qCDebug(lcEngine, "BassQt::PostEventMessage");
    if (code == kNotifyLog && payload.toString().isEmpty())
        return;
    QCoreApplication::postEvent(this, new EngineEvent(code, payload));
}

void BassQt::customEvent(QEvent* event) {
    const int code = static_cast<int>(event->type());
    if (code >= kNotifyStall && code <= kNotifyMetaChanged)
        onNotification(code, static_cast<EngineEvent*>(event)->payload());
    else
        CBass::customEvent(event);
}

} // namespace BASS
