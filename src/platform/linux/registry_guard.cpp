#include "platform/registry_guard.h"

int installRegistryGuard() {
    return 0; // no registry
}
