#include "ui/display_choice.h"

bool mustRunWithoutWindow(const DisplayEnvironment& environment) {
    return !environment.isAlwaysThere && environment.platform.isEmpty() &&
           environment.x11.isEmpty() && environment.wayland.isEmpty();
}
