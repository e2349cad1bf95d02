#include "app/app_settings.h"
#include "ui/app_ui_settings.h"
#include "ui/commands.h"
#include "ui/dialogs/sound_dialog.h"
#include "ui/widgets/peak_meter.h"
#include "ui/widgets/spectrum_bands.h"
#include "ui/window_fixture.h"

#include <QAbstractSlider>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>
#include <cmath>

namespace {

class SoundTest : public WindowTest {
  protected:
    SoundDialog& openDialog() {
        open();
        press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        auto* dialog = window->findChild<SoundDialog*>();
        EXPECT_NE(dialog, nullptr);
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        return *dialog;
    }
    template <typename Widget>
    Widget* part(const char* name) {
        return child<Widget>(name);
    }
};

BASS::StationRecord station(const char* address, const char* id = "") {
    BASS::StationRecord record = BASS::stationFromAddress(QString::fromLatin1(address));
    record.stationId = QString::fromLatin1(id);
    return record;
}

} // namespace

TEST_F(SoundTest, SlidersAndPresetsAreHeardAtOnceAndKept) {
    openDialog();
    auto* slider = part<QAbstractSlider>("band3");
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Up);
    QTest::keyClick(slider, Qt::Key_PageUp);
    EXPECT_TRUE(player.sound.equalizer.isOn); // moving a slider switches it on
    EXPECT_EQ(player.sound.equalizer.bandsDb[3], 3.5F);
    EXPECT_EQ(slider->accessibleDescription(), QStringLiteral("+3.5 decibels"));
    auto* preset = part<QComboBox>("equalizerPreset");
    EXPECT_EQ(preset->currentText(), QStringLiteral("Own"));
    preset->setFocus();
    QTest::keyClick(preset, Qt::Key_Home);
    QTest::keyClick(preset, Qt::Key_Down);
    EXPECT_EQ(player.sound.equalizer.bandsDb, BASS::bandsFromText(QStringLiteral("Rock")));
    EXPECT_EQ(settings.generalSound.equalizer.bandsDb, player.sound.equalizer.bandsDb);
    QTest::keyClick(part<QCheckBox>("equalizerOn"), Qt::Key_Space);
    EXPECT_FALSE(player.sound.equalizer.isOn);
    EXPECT_EQ(player.sound.equalizer.bandsDb[0], 5.0F); // kept for the next time
    QTest::mouseClick(part<QPushButton>("soundReset"), Qt::LeftButton);
    EXPECT_EQ(BASS::presetOf(player.sound.equalizer.bandsDb), 0);
}

TEST_F(SoundTest, AStationKeepsItsOwnEqualizer) {
    openDialog();
    EXPECT_FALSE(part<QCheckBox>("equalizerOfStation")->isEnabled()); // there is no station
    player.play(station("http://one.example/"));
    part<QAbstractSlider>("preamp")->setValue(-6);
    QTest::keyClick(part<QCheckBox>("equalizerOfStation"), Qt::Key_Space);
    part<QAbstractSlider>("band0")->setValue(10);
    EXPECT_EQ(player.sound.equalizer.bandsDb[0], 5.0F);

    player.play(station("http://two.example/"));
    EXPECT_EQ(player.sound.equalizer.bandsDb[0], 0.0F);
    EXPECT_EQ(player.sound.equalizer.preampDb, -3.0F);
    EXPECT_FALSE(part<QCheckBox>("equalizerOfStation")->isChecked());
    player.play(station("http://one.example/"));
    EXPECT_EQ(player.sound.equalizer.bandsDb[0], 5.0F);
    EXPECT_EQ(part<QAbstractSlider>("band0")->value(), 10);
    QTest::keyClick(part<QCheckBox>("equalizerOfStation"), Qt::Key_Space);
    EXPECT_EQ(player.sound.equalizer.bandsDb[0], 0.0F);
}

TEST_F(SoundTest, MenuAndDialogShowTheSame) {
    openDialog();
    const Commands& commands = window->commands();
    commands.boosts.at(3)->trigger();
    commands.mono->trigger();
    EXPECT_EQ(player.sound.boost, BASS::DynamicBoost::High);
    EXPECT_EQ(part<QComboBox>("boost")->currentIndex(), 3);
    EXPECT_EQ(part<QSpinBox>("boostGain")->value(), 14);
    EXPECT_FALSE(part<QSpinBox>("boostGain")->isEnabled());
    EXPECT_FALSE(commands.compressor->isEnabled()); // the boost does it
    EXPECT_TRUE(part<QCheckBox>("mono")->isChecked());
    part<QComboBox>("boost")->setCurrentIndex(4);
    EXPECT_TRUE(commands.boosts.at(4)->isChecked());
    part<QSpinBox>("boostThreshold")->setValue(-33);
    EXPECT_EQ(player.sound.customBoost.thresholdDb, -33.0F);
    part<QAbstractSlider>("stereoSeparation")->setValue(-40);
    EXPECT_EQ(player.sound.stereoSeparation, -40);
    QTest::keyClick(part<QCheckBox>("swapChannels"), Qt::Key_Space);
    EXPECT_TRUE(commands.swapChannels->isChecked());
}

TEST_F(SoundTest, EveryPartOfTheDialogHasANameAndIsReachedByKeys) {
    SoundDialog& dialog = openDialog();
    player.play(station("http://one.example/"));
    QSet<QWidget*> reached;
    part<QCheckBox>("equalizerOn")->setFocus();
    for (int n = 0; n < 40; ++n) {
        reached.insert(dialog.focusWidget());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    }
    int checked = 0;
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        const bool isPart = qobject_cast<QAbstractSlider*>(widget) != nullptr ||
                            qobject_cast<QAbstractButton*>(widget) != nullptr ||
                            qobject_cast<QComboBox*>(widget) != nullptr ||
                            qobject_cast<QSpinBox*>(widget) != nullptr;
        if (!isPart || !widget->isVisible() || !widget->isEnabled()) {
            continue;
        }
        ++checked;
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        EXPECT_FALSE(widget->accessibleName().isEmpty() &&
                     (button == nullptr || button->text().isEmpty()))
            << qPrintable(widget->objectName());
        EXPECT_TRUE(reached.contains(widget)) << qPrintable(widget->objectName());
    }
    EXPECT_GT(checked, 18);
    QApplication::setActiveWindow(&dialog);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(SoundTest, SettingsFileKeepsEverything) {
    DataFolder where;
    where.path = folder.path();
    where.applicationDir = folder.path();
    const BASS::StationRecord named = station("http://one.example/", "4711");
    const BASS::StationRecord unnamed = station("http://two.example/a=b;c?d");
    const BASS::StationRecord file = station("/home/me/song.mp3");
    BASS::SoundOptions general;
    general.equalizer = {true, -4.5F, BASS::bandsFromText(QStringLiteral("Jazz"))};
    general.isCompressorOn = true;
    general.boost = BASS::DynamicBoost::Custom;
    general.customBoost = {true, -40.0F, 6.0F, 12.0F};
    general.isAutoVolume = true;
    general.isMono = true;
    general.isSwapped = true;
    general.stereoSeparation = -55;
    BASS::SoundOptions own = general;
    own.isEqualizerOfStation = true;
    own.equalizer = {true, 1.0F, {1.5F, 2, 3, 4, 5, -6, -7, -8, -9, -10}};
    BASS::SoundOptions silent = own;
    silent.equalizer.isOn = false;
    {
        AppSettings store(where);
        AppUiSettings kept(store);
        EXPECT_EQ(kept.sound({}).boost, BASS::DynamicBoost::Off);
        EXPECT_FALSE(kept.sound({}).equalizer.isOn);
        kept.setSound({}, general);
        kept.setSound(named, own);
        kept.setSound(unnamed, silent);
        BASS::SoundOptions ofFile = general;
        ofFile.boost = BASS::DynamicBoost::Low;
        kept.setSound(file, ofFile);
    }
    AppSettings store(where);
    AppUiSettings kept(store);
    const BASS::SoundOptions back = kept.sound(station("http://three.example/"));
    EXPECT_EQ(store.EQPreset(), QStringLiteral("Jazz"));
    EXPECT_EQ(back.equalizer.bandsDb, general.equalizer.bandsDb);
    EXPECT_EQ(back.equalizer.preampDb, -4.5F);
    EXPECT_EQ(back.boost, BASS::DynamicBoost::Custom);
    EXPECT_EQ(back.customBoost.thresholdDb, -40.0F);
    EXPECT_EQ(back.customBoost.ratio, 6.0F);
    EXPECT_EQ(back.customBoost.makeUpDb, 12.0F);
    EXPECT_TRUE(back.isAutoVolume && back.isMono && back.isSwapped && back.isCompressorOn);
    EXPECT_EQ(back.stereoSeparation, -55);
    EXPECT_EQ(kept.sound(named).equalizer.bandsDb, own.equalizer.bandsDb);
    EXPECT_TRUE(kept.sound(named).isEqualizerOfStation);
    EXPECT_EQ(BASS::presetOf(kept.sound(unnamed).equalizer.bandsDb), 0);
    EXPECT_EQ(kept.sound(file).boost, BASS::DynamicBoost::Low);
    kept.forgetStationEqualizer(named);
    EXPECT_EQ(kept.sound(named).equalizer.bandsDb, general.equalizer.bandsDb);
}

TEST_F(SoundTest, ThePeakMeterWorksOnlyWhileItIsSeenAndSomethingPlays) {
    const std::pair<quint32, double> levels[] = {
        {0, 0.0}, {1, 0.0}, {32768, 1.0}, {40000, 1.0}, {16384, 1.0 - 6.02 / 48.0}, {130, 0.0}};
    for (const auto& [peak, expected] : levels) {
        EXPECT_NEAR(PeakMeter::fullness(peak), expected, 0.001) << peak;
    }
    open();
    auto* meter = part<PeakMeter>("peakMeter");
    EXPECT_FALSE(meter->isAsking());
    playAddress(QStringLiteral("http://one.example/"));
    EXPECT_FALSE(meter->isAsking());
    player.becomePlaying();
    player.currentLevel = 16384U | (32768U << 16);
    EXPECT_TRUE(meter->isAsking());
    EXPECT_TRUE(QTest::qWaitFor([this] { return player.levelsAsked >= 2; }));
    const QImage picture = meter->grab().toImage();
    EXPECT_EQ(picture.pixelColor(2, 1), QColor(85, 170, 127)); // left: half full
    EXPECT_NE(picture.pixelColor(picture.width() - 3, 1), QColor(85, 170, 127));
    EXPECT_NE(picture.pixelColor(2, picture.height() - 2), QColor(85, 170, 127));
    window->hide();
    EXPECT_FALSE(meter->isAsking());
    window->show();
    EXPECT_TRUE(meter->isAsking());
    Preferences after;
    after.meter = MeterKind::None;
    settings.stored = after;
    meter->setLook(settings.peakMeter());
    EXPECT_FALSE(meter->isAsking());
    meter->setLook({});
    EXPECT_TRUE(meter->isAsking());
    player.stop();
    EXPECT_FALSE(meter->isAsking());
}

TEST_F(SoundTest, TheMeterShowsTheSpectrumInstead) {
    EXPECT_EQ(spectrumBands({1.0F, 1.0F}, 0.0), QVector<double>(kSpectrumBands, 0.0));
    for (const double hz : {60.0, 250.0, 1000.0, 15000.0}) { // one frequency, one bar
        QVector<float> sine(1024, 0.0F);
        sine[qRound(hz / 20.0)] = 0.5F;
        const QVector<double> bands = spectrumBands(sine, 20.0);
        EXPECT_EQ(std::count(bands.begin(), bands.end(), 0.0), kSpectrumBands - 1) << hz;
        const auto bar = std::max_element(bands.begin(), bands.end()) - bands.begin();
        EXPECT_NEAR(static_cast<double>(bar),
                    kSpectrumBands * std::log(hz / 50.0) / std::log(320.0) - 0.5,
                    0.6)
            << hz;
    }
    settings.stored.meter = MeterKind::Spectrum;
    open();
    auto* meter = part<PeakMeter>("peakMeter");
    EXPECT_EQ(meter->accessibleName(), QStringLiteral("Spectrum"));
    player.currentSpectrum.fill(0.5F, 100); // up to 2 kHz: about two thirds of the bars
    playAddress(QStringLiteral("http://one.example/"));
    player.becomePlaying();
    EXPECT_TRUE(QTest::qWaitFor([this] { return player.levelsAsked >= 2; }));
    const QImage picture = meter->grab().toImage();
    const QColor empty(85, 170, 127);
    EXPECT_NE(picture.pixelColor(1, picture.height() - 2), empty);
    EXPECT_EQ(picture.pixelColor(picture.width() - 2, picture.height() - 2), empty);
}
