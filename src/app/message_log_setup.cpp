#include "app/app_settings.h"
#include "app/message_log.h"

MessageLogSetup messageLogSetup(const AppSettings& settings) {
    MessageLogSetup setup;
    if (settings.CreateLogFile())
        setup.path = settings.dataFile(QStringLiteral("Wavelark.log"));
    setup.isDebugKept = settings.AdvancedLogging();
    return setup;
}
