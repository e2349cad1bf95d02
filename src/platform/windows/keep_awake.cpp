#include "platform/keep_awake.h"

#include <windows.h>

struct KeepAwake::Private {
    bool isActive = false;
};

KeepAwake::KeepAwake() : d(std::make_unique<Private>()) {}

KeepAwake::~KeepAwake() {
    setActive(false);
}

void KeepAwake::setActive(bool isActive) {
    if (d->isActive == isActive)
        return;
    d->isActive = isActive;
    // ES_CONTINUOUS alone gives back what this thread asked for before.
    SetThreadExecutionState(isActive ? ES_CONTINUOUS | ES_SYSTEM_REQUIRED : ES_CONTINUOUS);
}

bool KeepAwake::isActive() const {
    return d->isActive;
}
