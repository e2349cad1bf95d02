#pragma once

#include "base/clock.h"
#include "stations/played_stations.h"
#include "ui/all_skylark_radio.h"
#include "ui/demo_player.h"
#include "ui/ui_settings.h"

#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

/// A list of texts as the program has them.
inline QStringList texts(std::initializer_list<const char*> list) {
    QStringList result;
    for (const char* text : list) {
        result.append(QString::fromUtf8(text));
    }
    return result;
}

/// Time that a test moves.
class FakeClock final : public Clock {
  public:
    std::chrono::milliseconds passed{1000};

    [[nodiscard]] std::chrono::milliseconds steady() const override { return passed; }
    [[nodiscard]] QDateTime now() const override {
        return QDateTime(QDate(2026, 3, 14), QTime(9, 0)).addMSecs(passed.count());
    }
};

/// Settings that forget.
class MemorySettings final : public UiSettings {
  public:
    int storedVolume = 20;
    ThemeChoice storedTheme = ThemeChoice::Light;
    QByteArray geometry;
    int page = -1;
    bool isAsking = true;
    bool isAutoPlaying = false;
    bool isAdvanced = false;
    bool isSplitting = true;
    bool hasPauseButton = false;
    int encoder = 0;
    QString folder;
    BASS::SoundOptions generalSound;
    QHash<QString, BASS::SoundOptions> stationSounds;
    TrayOptions tray;
    Preferences stored;
    QString language = QStringLiteral("English.lng");

    [[nodiscard]] int volume() const override { return storedVolume; }
    void setVolume(int percent) override { storedVolume = percent; }
    [[nodiscard]] ThemeChoice theme() const override { return storedTheme; }
    void setTheme(ThemeChoice choice) override { storedTheme = choice; }
    [[nodiscard]] QByteArray windowGeometry(const QString&) const override { return geometry; }
    void setWindowGeometry(const QString&, const QByteArray& bytes) override { geometry = bytes; }
    [[nodiscard]] int lastPage() const override { return page; }
    void setLastPage(int index) override { page = index; }
    [[nodiscard]] QString languageFile() const override { return language; }
    void setLanguageFile(const QString& file) override { language = file; }
    [[nodiscard]] TrayOptions trayOptions() const override { return tray; }
    [[nodiscard]] Preferences preferences() const override {
        Preferences now = stored;
        now.theme = storedTheme;
        now.languageFile = language;
        now.tray = tray;
        return now;
    }
    void changePreferences(const Preferences&, const Preferences& after) override {
        stored = after;
        storedTheme = after.theme;
        language = after.languageFile;
        tray = after.tray;
    }
    [[nodiscard]] BASS::SoundOptions sound(const BASS::StationRecord& station) const override {
        return stationSounds.value(station.playUrl(), generalSound);
    }
    void setSound(const BASS::StationRecord& station, const BASS::SoundOptions& now) override {
        if (now.isEqualizerOfStation) {
            stationSounds.insert(station.playUrl(), now);
        } else {
            generalSound = now;
        }
    }
    void forgetStationEqualizer(const BASS::StationRecord& station) override {
        stationSounds.remove(station.playUrl());
    }
    [[nodiscard]] PeakMeterLook peakMeter() const override {
        return {stored.meter, {85, 170, 127}, {255, 170, 0}, {255, 255, 127}};
    }
    [[nodiscard]] bool askOnExitIfRecording() const override { return isAsking; }
    [[nodiscard]] bool autoPlayOnStart() const override { return isAutoPlaying; }
    [[nodiscard]] bool advancedScheduling() const override { return isAdvanced; }
    [[nodiscard]] bool isRecordButtonSplitting() const override { return isSplitting; }
    [[nodiscard]] bool isPauseButtonShown() const override { return hasPauseButton; }
    [[nodiscard]] QString recordingFolder() const override { return folder; }
    [[nodiscard]] BASS::RecordingOptions recordingOptions(BASS::RecordMode mode,
                                                          const BASS::StationRecord& station,
                                                          const QString& schedule) const override {
        BASS::RecordingOptions options;
        options.mode = mode;
        options.folder = folder;
        options.station.station = station.name;
        options.station.schedule = schedule;
        options.encoder = encoder;
        return options;
    }
};

/// A real window over a scripted player.
class WindowTest : public ::testing::Test {
  protected:
    WindowTest() {
        settings.folder = folder.filePath(QStringLiteral("Recordings"));
        settings.tray.isShown = false; // the offscreen platform has none and says so each time
    }

    /// Makes and shows the window; done late, so that a test can set up what it finds.
    AllSkylarkRadio& open(const QStringList& arguments = {QStringLiteral("wavelark")}) {
        const auto openUrl = [this](const QUrl& url) {
            opened.append(url.toLocalFile());
            return canOpen;
        };
        const auto power = [this](EndAction action) {
            powerActions.append(static_cast<int>(action));
            return powerAnswer;
        };
        window = std::make_unique<AllSkylarkRadio>(WindowServices{
            player, played, settings, clock, openUrl, power, arguments, languages, [this] {
                return hasTray;
            }});
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        return *window;
    }

    template <typename Widget = QWidget>
    Widget* child(const char* name) {
        auto* found = window->findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    /// The shown text of a label or button.
    QString text(const char* name) { return child(name)->accessibleName(); }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(
            target != nullptr ? target : window.get(), static_cast<Qt::Key>(key), modifiers);
    }
    void playAddress(const QString& address) {
        auto* field = child<QLineEdit>("addressField");
        field->setFocus();
        field->clear();
        QTest::keyClicks(field, address);
        QTest::keyClick(field, Qt::Key_Return);
    }

    QTemporaryDir folder;
    FakeClock clock;
    MemorySettings settings;
    DemoPlayer player;
    BASS::PlayedStations played{folder.filePath(QStringLiteral("played.json"))};
    QStringList opened;
    bool canOpen = true;
    QList<int> powerActions;
    QString powerAnswer;
    QVector<Language> languages;
    bool hasTray = false;
    std::unique_ptr<AllSkylarkRadio> window;
};
