#include "ui/startup_actions.h"

#include "app/app_settings.h"
#include "app/program_data.h"
#include "app/startup.h"
#include "platform/power.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QMessageBox>

#include <cstdio>

namespace {

struct Startup {
    Q_DECLARE_TR_FUNCTIONS(Startup)
};

bool isAnsweredYes(const QString& question) {
    return QMessageBox::question(nullptr,
                                 QStringLiteral("Wavelark"),
                                 question,
                                 QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void tell(const QString& message) {
    if (hasDisplay()) {
        QMessageBox::critical(nullptr, QStringLiteral("Wavelark"), message);
    } else {
        std::fprintf(stderr, "%s\n", qUtf8Printable(message));
    }
}

PowerAction powerAction(EndAction action) {
    switch (action) {
    case EndAction::Sleep:
        return PowerAction::Sleep;
    case EndAction::Hibernate:
        return PowerAction::Hibernate;
    default:
        return PowerAction::Shutdown;
    }
}

} // namespace

bool hasDisplay() {
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

bool carryOutUninstall(const QStringList& arguments) {
    if (decideStartupSwitch(arguments, true).kind != StartupSwitch::Kind::Uninstall) {
        return false;
    }
    if (!hasDisplay()) {
        tell(Startup::tr("Nothing was removed: the question before it needs a display."));
        return true;
    }
    if (!isAnsweredYes(Startup::tr("Do you want to remove your settings and data?"))) {
        return true;
    }
    const Result<RemovalPlan> plan = planRemoval({currentDataFolder(), QDir::homePath()});
    const Status removed = plan ? removeProgramData(plan.value()) : Status(Error{plan.error()});
    if (!removed) {
        tell(Startup::tr("Not everything was removed: %1").arg(removed.error()));
    }
    return true;
}

void storeLanguageSwitch(AppSettings& settings, const QStringList& arguments) {
    const StartupSwitch given = decideStartupSwitch(arguments, settings.LanguageSet());
    if (given.kind == StartupSwitch::Kind::Language) {
        settings.LanguageFile.set(given.languageFile);
        settings.LanguageSet.set(true);
    }
}

int reportFatal(const QString& message) {
    tell(message);
    return 1;
}

QString performPowerAction(EndAction action) {
    const bool mustAsk = action == EndAction::Shutdown && hasDisplay();
    if (mustAsk &&
        !isAnsweredYes(Startup::tr("Computer shutdown will start imminently. Do you wish to "
                                   "continue?"))) {
        return {};
    }
    const Status asked = requestPower(powerAction(action));
    return asked ? QString()
                 : Startup::tr("The system did not do what was planned for the end: %1.")
                       .arg(asked.error());
}
