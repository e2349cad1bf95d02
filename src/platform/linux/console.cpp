#include "platform/console.h"

void attachParentConsole() {}
