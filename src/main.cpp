#include "app/app_settings.h"
#include "app/application_identity.h"
#include "app/application_proxy.h"
#include "app/language_manager.h"
#include "app/message_log.h"
#include "app/startup.h"
#include "audio/provider_loader.h"
#include "base/clock.h"
#include "base/log.h"
#include "engine/app_device_stream.h"
#include "platform/console.h"
#include "platform/crash_report.h"
#include "platform/keep_awake.h"
#include "platform/memory_use.h"
#include "platform/program_arguments.h"
#include "platform/registry_guard.h"
#include "platform/termination_signals.h"
#include "platform/windows_theme_watcher.h"
#include "stations/played_stations.h"
#include "ui/all_skylark_radio.h"
#include "ui/app_ui_settings.h"
#include "ui/console_reporter.h"
#include "ui/display_choice.h"
#include "ui/engine_player.h"
#include "ui/single_application.h"
#include "ui/startup_actions.h"
#include "ui/theme/desktop_theme.h"
#include "ui/theme/icons.h"
#include "ui/theme/wavelark_style.h"

#include <QDesktopServices>
#include <QSystemTrayIcon>

#include <cstdio>
#include <memory>

// Exported by Qt Gui without a header.
void Q_GUI_EXPORT qt_set_sequence_auto_mnemonic(bool enable);

namespace {

void enableHighDpi() {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // A scale that the user has asked for stays.
    for (const char* name : {"QT_AUTO_SCREEN_SCALE_FACTOR", "QT_SCALE_FACTOR"}) {
        if (!qEnvironmentVariableIsSet(name)) {
            qputenv(name, "1");
        }
    }
}

/// Before the application object exists: whether there can be a window at all.
void chooseDisplay() {
    DisplayEnvironment environment{
        qgetenv("QT_QPA_PLATFORM"), qgetenv("DISPLAY"), qgetenv("WAYLAND_DISPLAY"), false};
#ifdef Q_OS_WIN
    environment.isAlwaysThere = true;
#endif
    if (mustRunWithoutWindow(environment)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        std::fputs("No display: running without a window.\n", stderr);
    }
}

/// Without a display the console says what happens.
std::unique_ptr<ConsoleReporter> reportOnConsole(const Player& player,
                                                 const AllSkylarkRadio& window) {
    if (hasDisplay()) {
        return nullptr;
    }
    auto console = std::make_unique<ConsoleReporter>(player, stdout, stderr);
    QObject::connect(
        &window, &AllSkylarkRadio::sig_messageShown, console.get(), &ConsoleReporter::report);
    return console;
}

/// Everything that lives as long as the window, in the order of what stands on what.
int runWindow(QT_EXT::SingleApplication& app,
              AppSettings& settings,
              MessageLog& log,
              const QStringList& arguments) {
    LanguageManager languages(LanguageManager::standardFolders());
    languages.load(settings.LanguageFile());
    const auto provider =
        BASS::loadChosenProvider(settings.AudioProvider(), BASS::audioProviderFolders());
    if (!provider) {
        return reportFatal(provider.error());
    }
    const SystemClock clock;
    AppUiSettings preferences(settings);
    QApplication::setFont(preferences.applicationFont());
    const WindowsThemeWatcher desktop;
    followDesktopTheme(desktop);
    WavelarkStyle::install(preferences.theme());

    AppDeviceStream engine(provider.value().library);
    EnginePlayer player(engine, [&preferences] { return preferences.engineSettings(); });
    BASS::PlayedStations played(settings.dataFile(QStringLiteral("played.json")));
    const Status loaded = played.load();
    AllSkylarkRadio window({player,
                            played,
                            preferences,
                            clock,
                            &QDesktopServices::openUrl,
                            &performPowerAction,
                            arguments,
                            languages.languages(),
                            [] { return hasDisplay() && QSystemTrayIcon::isSystemTrayAvailable(); },
                            hasDisplay()});

    engine.setMainObject(&window);
    const std::unique_ptr<ConsoleReporter> console = reportOnConsole(player, window);
    KeepAwake keepAwake;
    QObject::connect(&player, &Player::sig_recordingChanged, &app, [&keepAwake](bool isRecording) {
        keepAwake.setActive(isRecording);
    });
    const TerminationSignals termination;
    QObject::connect(
        &termination, &TerminationSignals::sig_terminate, &window, &AllSkylarkRadio::finishAndQuit);
    QObject::connect(&window,
                     &AllSkylarkRadio::sig_quitRequested,
                     &app,
                     &QCoreApplication::quit,
                     Qt::QueuedConnection);
    QObject::connect(&app,
                     &QT_EXT::SingleApplication::receivedMessage,
                     &window,
                     &AllSkylarkRadio::slot_receivedMessage);
    QObject::connect(&window, &AllSkylarkRadio::sig_preferencesChanged, [&log, &settings] {
        log.setUp(messageLogSetup(settings));
    });
    QApplication::setQuitOnLastWindowClosed(false); // the window says when all is on disk
    window.showNotes(settings.takeMessages() + provider.value().notes +
                     (loaded ? QStringList() : QStringList(loaded.error())));
    if (hasDisplay() && isWindowShownAtStart(arguments)) {
        window.showAtStart();
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[]) {
    tuneMemoryUse();
    attachParentConsole();
    installRegistryGuard();
    qt_set_sequence_auto_mnemonic(true);
    registerResources();
    enableHighDpi();
    chooseDisplay();
    setApplicationIdentity();
    MessageLog log({});
    QT_EXT::SingleApplication app(argc, argv, true);
    if (app.exitCode()) {
        return *app.exitCode();
    }
    const QStringList arguments = programArguments(argc, argv);
    if (carryOutUninstall(arguments)) {
        return 0;
    }
    AppSettings settings;
    log.setUp(messageLogSetup(settings));
    installCrashReport(settings.dataFile(QStringLiteral("crash.txt")),
                       QCoreApplication::applicationVersion());
    storeLanguageSwitch(settings, arguments);
    if (isForwarding({arguments, app.isSecondary(), settings.AllowMultipleInstances()})) {
        app.sendMessage(forwardMessage(arguments), 1000);
        qCInfo(lcApp) << "App already running.";
        qCInfo(lcApp) << "Primary instance PID: " << app.primaryPid();
        qCInfo(lcApp) << "Primary instance user: " << app.primaryUser();
        return 0;
    }
    applyApplicationProxy(proxySettings(settings));
    return runWindow(app, settings, log, arguments);
}
