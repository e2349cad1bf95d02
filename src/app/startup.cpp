#include "app/startup.h"

namespace {
const QLatin1String kLanguagePrefix("/lang=");

QString languageFileOf(QString language) {
    language.replace(QLatin1String("chinese_simplified"), QLatin1String("chinese (simplified)"));
    language.replace(QLatin1String("chinese_traditional"), QLatin1String("chinese (traditional)"));
    language.replace(QLatin1String("portuguese_br"), QLatin1String("portuguese (brazilian)"));
    return language + QLatin1String(".lng");
}

/// The name becomes a file in the folder of languages, and nowhere else.
bool isFileName(const QString& name) {
    return !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\'));
}
} // namespace

StartupSwitch decideStartupSwitch(const QStringList& arguments, bool isLanguageSet) {
    StartupSwitch decision;
    if (arguments.size() < 2)
        return decision;
    const QString first = arguments.at(1).toLower();
    if (first == QLatin1String("/uninstall")) {
        decision.kind = StartupSwitch::Kind::Uninstall;
    } else if (first.startsWith(kLanguagePrefix) && !isLanguageSet) {
        const QString language = first.mid(kLanguagePrefix.size());
        if (isFileName(language)) {
            decision.kind = StartupSwitch::Kind::Language;
            decision.languageFile = languageFileOf(language);
        }
    }
    return decision;
}

QByteArray forwardMessage(const QStringList& arguments) {
    return arguments.join(QLatin1Char('\n')).toUtf8();
}

bool isForwarding(const ForwardInput& input) {
    return !input.areMultipleInstancesAllowed && input.isSecondary &&
           !input.arguments.contains(QStringLiteral("/restart"));
}

bool isWindowShownAtStart(const QStringList& arguments) {
    return !arguments.contains(QStringLiteral("/show=minimized"));
}
