// Draws the window in its states over a scripted player, for the documentation and for the eye.
// Usage: wavelark-screenshots FOLDER

#include "ui/commands.h"
#include "ui/theme/icons.h"
#include "ui/theme/wavelark_style.h"
#include "ui/widgets/peak_meter.h"
#include "ui/window_fixture.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QTabWidget>

#include <cmath>
#include <functional>

using namespace std::chrono_literals;

namespace {

struct Scene {
    FakeClock clock;
    MemorySettings settings;
    DemoPlayer player;
    QTemporaryDir folder;
    BASS::PlayedStations played{folder.filePath(QStringLiteral("played.json"))};
    std::unique_ptr<AllSkylarkRadio> window;

    explicit Scene(bool isFilled) {
        settings.folder = folder.filePath(QStringLiteral("Recordings"));
        if (isFilled) {
            fill();
        }
        window =
            std::make_unique<AllSkylarkRadio>(WindowServices{player,
                                                             played,
                                                             settings,
                                                             clock,
                                                             [](const QUrl&) { return true; },
                                                             [](EndAction) { return QString(); },
                                                             {}});
    }

    void fill() {
        const struct {
            const char* name;
            const char* url;
            const char* genre;
            int bitrate;
        } stations[] = {
            {"Harbour Jazz", "http://radio.example:8000/jazz", "Jazz", 192},
            {"Night Train Classics", "https://classics.example/live", "Classical", 320},
            {"Radio Polder", "http://polder.example/stream.ogg", "News, Talk", 96},
            {"إذاعة الصباح", "http://sabah.example/live", "Pop", 128},
            {"Northern Folk", "http://folk.example:8010/;", "Folk", 128},
            {"The Early Birds", "http://birds.example/live.mp3", "Ambient", 256},
        };
        for (const auto& s : stations) {
            BASS::StationRecord record =
                BASS::stationFromAddress(QString::fromUtf8(s.url), QString::fromUtf8(s.name));
            record.genre = QString::fromUtf8(s.genre);
            record.bitrate = s.bitrate;
            record.lastPlayed = QDateTime(QDate(2026, 3, 14), QTime(8, 30));
            played.add(record);
        }
    }

    void play() {
        BASS::StationRecord station = played.stations().last();
        window->findChild<QWidget*>(QStringLiteral("pageList"))->setFocus();
        player.play(station);
        player.becomePlaying({QStringLiteral("MP3"),
                              station.name,
                              station.genre,
                              {},
                              192,
                              44100,
                              2,
                              1000000,
                              false,
                              0,
                              6000});
        player.currentLevel = 9000U | (14000U << 16);
        player.sendTitle(QStringLiteral("The Lamplighters - Slow Boat to the Lighthouse"));
        clock.passed += 754s;
        emit player.sig_streamInfoChanged(player.streamInfo());
    }

    void playWithSpectrum() {
        for (int n = 0; n < 1024; ++n) { // as music falls off
            player.currentSpectrum.append(
                static_cast<float>((0.4 + 0.3 * std::sin(n * 1.7)) / (1.0 + n / 6.0)));
        }
        settings.stored.meter = MeterKind::Spectrum;
        window->findChild<PeakMeter*>()->setLook(settings.peakMeter());
        play();
    }

    void record() {
        window->commands().recordToggle->trigger();
        BASS::RecordingProgress progress;
        progress.path =
            settings.folder + QStringLiteral("/Harbour Jazz/The Lamplighters - Slow Boat to the "
                                             "Lighthouse.mp3");
        progress.fileBytes = 4431872;
        progress.files = 4;
        progress.fileDuration = 185s;
        emit player.sig_recordingProgress(progress);
    }
};

struct Shot {
    const char* name;
    ThemeChoice theme;
    QSize size;
    bool isFilled;
    std::function<void(Scene&)> act;
};

void take(const Shot& shot, const QDir& folder) {
    WavelarkStyle::install(shot.theme);
    Scene scene(shot.isFilled);
    scene.window->resize(shot.size);
    scene.window->show();
    QApplication::setActiveWindow(scene.window.get());
    QTest::qWait(200);
    shot.act(scene);
    QTest::qWait(400);
    QWidget* shown = QApplication::activeModalWidget();
    if (shown == nullptr) {
        shown = scene.window->findChild<QDialog*>();
    }
    if (shown == nullptr) {
        shown = scene.window.get();
    }
    shown->grab().save(folder.filePath(QLatin1String(shot.name) + QLatin1String(".png")));
}

void error(Scene& scene) {
    scene.play();
    scene.player.failToConnect(QStringLiteral(
        "Failed to connect at this time: Connection timed out. Check the address and the network, "
        "then try again."));
}

void logPage(Scene& scene) {
    emit scene.player.sig_logLine(QStringLiteral("Connecting first try..."), false);
    emit scene.player.sig_logLine(QStringLiteral("Connection succeeded"), false);
    emit scene.player.sig_logLine(QStringLiteral("The connection to the station was lost"), true);
    emit scene.player.sig_logLine(QStringLiteral("Connecting first try..."), false);
    scene.window->commands().pages.last()->trigger();
}

/// A page of the settings dialog, by its number.
std::function<void(Scene&)> settingsPage(int number) {
    return [number](Scene& scene) {
        scene.window->commands().settings->trigger();
        QApplication::activeModalWidget()->findChild<QTabWidget*>()->setCurrentIndex(number);
    };
}

void pattern(Scene& scene) {
    settingsPage(3)(scene);
    QApplication::activeModalWidget()
        ->findChild<QAbstractButton*>(QStringLiteral("editSplit"))
        ->click();
}

} // namespace

int main(int argc, char** argv) {
    QLocale::setDefault(QLocale::c());
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication app(argc, argv);
    registerResources();
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
    const auto record = [](Scene& scene) {
        scene.play();
        scene.record();
    };
    const auto sound = [](Scene& scene) {
        scene.play();
        scene.window->commands().sound->trigger();
        QApplication::setActiveWindow(scene.window->findChild<QDialog*>());
        scene.window->findChild<QWidget*>(QStringLiteral("band2"))->setFocus();
        scene.window->findChild<QAbstractSlider*>(QStringLiteral("band2"))->setValue(9);
        scene.window->findChild<QAbstractSlider*>(QStringLiteral("band6"))->setValue(-12);
    };
    const auto settings = [](Scene& scene) {
        scene.player.devices = {texts({"Built-in Audio Analog Stereo", "USB Headset"}),
                                texts({"USB Microphone"})};
        scene.window->commands().settings->trigger();
        scene.window->findChild<QTabWidget*>()->setCurrentIndex(2);
    };
    const Shot shots[] = {
        {"recording-light", ThemeChoice::Light, {900, 560}, true, record},
        {"recording-dark", ThemeChoice::Dark, {900, 560}, true, record},
        {"playing-light", ThemeChoice::Light, {900, 560}, true, [](Scene& s) { s.play(); }},
        {"empty-light", ThemeChoice::Light, {900, 560}, false, [](Scene&) {}},
        {"empty-dark", ThemeChoice::Dark, {900, 560}, false, [](Scene&) {}},
        {"error-light", ThemeChoice::Light, {900, 560}, true, error},
        {"error-dark", ThemeChoice::Dark, {900, 560}, true, error},
        {"sound-light", ThemeChoice::Light, {900, 560}, true, sound},
        {"sound-dark", ThemeChoice::Dark, {900, 560}, true, sound},
        {"settings-dark", ThemeChoice::Dark, {900, 560}, true, settings},
        {"log-dark", ThemeChoice::Dark, {900, 560}, true, logPage},
        {"focus-dark",
         ThemeChoice::Dark,
         {700, 560},
         true,
         [](Scene& s) {
             s.play();
             s.window->findChild<QWidget*>(QStringLiteral("recordButton"))->setFocus();
         }},
        {"focus-light",
         ThemeChoice::Light,
         {700, 560},
         true,
         [](Scene& s) {
             s.play();
             s.record();
             s.window->findChild<QWidget*>(QStringLiteral("recordButton"))->setFocus();
         }},
        {"narrow-light", ThemeChoice::Light, {320, 560}, true, record},
        {"narrow-error", ThemeChoice::Dark, {320, 560}, true, error},
        {"settings-recording", ThemeChoice::Light, {900, 560}, true, settingsPage(3)},
        {"settings-encoding", ThemeChoice::Dark, {900, 560}, true, settingsPage(4)},
        {"pattern-light", ThemeChoice::Light, {900, 560}, true, pattern},
        {"pattern-dark", ThemeChoice::Dark, {900, 560}, true, pattern},
        {"spectrum-dark",
         ThemeChoice::Dark,
         {900, 560},
         true,
         [](Scene& s) { s.playWithSpectrum(); }},
        {"wide-light", ThemeChoice::Light, {1500, 700}, true, record},
    };
    for (const Shot& shot : shots) {
        take(shot, folder);
    }
    return 0;
}
