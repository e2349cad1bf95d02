#pragma once

#include "engine/cbass.h"

namespace BASS {

/// The bridge to the toolkit: notifications become posted events on the engine's own thread.
///
/// *Thread*: as CBass; Notify() from any thread. *Owner* and *Life*: as CBass.
class BassQt : public CBass {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BassQt)

  public:
    using CBass::CBass;

  protected:
    void Notify(int code, const QVariant& payload) override;
    void customEvent(QEvent* event) override;
    /// GUI thread: a notification has arrived.
    virtual void onNotification(int code, const QVariant& payload) = 0;
};

} // namespace BASS
