#include "ui/preferences.h"

#include <QCoreApplication>

namespace {

struct PreferenceFaults {
    Q_DECLARE_TR_FUNCTIONS(PreferenceFaults)
};

bool isPort(const QString& text) {
    bool isNumber = false;
    const uint port = text.toUInt(&isNumber);
    return isNumber && port > 0 && port <= 65535;
}

} // namespace

QString preferencesFault(const Preferences& preferences) {
    if (preferences.recording.split.pattern.trimmed().isEmpty() ||
        preferences.recording.noSplit.pattern.trimmed().isEmpty()) {
        return PreferenceFaults::tr("A file name pattern is empty. Example: %1")
            .arg(QStringLiteral("%title%\\%track%"));
    }
    const ProxySettings& proxy = preferences.proxy;
    if (proxy.isDisabled) {
        return {};
    }
    if (proxy.host.trimmed().isEmpty()) {
        return PreferenceFaults::tr("The proxy needs the name of its server.");
    }
    if (proxy.host.contains(QLatin1Char('/')) || proxy.host.contains(QLatin1Char(' '))) {
        return PreferenceFaults::tr(
            "The proxy's server is a name only, without “http://”, a port or blanks.");
    }
    return isPort(proxy.port)
               ? QString()
               : PreferenceFaults::tr("The proxy's port is a number from 1 to 65535.");
}

bool isRestartNeeded(const Preferences& before, const Preferences& after) {
    return before.languageFile.compare(after.languageFile, Qt::CaseInsensitive) != 0 ||
           before.areMultipleInstancesAllowed != after.areMultipleInstancesAllowed;
}
