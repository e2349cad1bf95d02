#include "app/app_settings.h"
#include "ui/app_ui_settings.h"
#include "ui/commands.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/theme/wavelark_style.h"
#include "ui/window_fixture.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabWidget>

namespace {

class SettingsDialogTest : public WindowTest {
  protected:
    SettingsDialogTest() {
        languages = {{QStringLiteral("English.lng"), QStringLiteral("English")},
                     {QStringLiteral("German.lng"), QStringLiteral("Deutsch")}};
        devices = {texts({"Speakers", "Headset"}), texts({"Microphone"})};
        settings.stored.recording.split.pattern = QStringLiteral("%track%");
        settings.stored.recording.noSplit.pattern = QStringLiteral("%title%");
    }

    AudioDevices devices;

    SettingsDialog& openDialog() {
        open();
        press(Qt::Key_Comma, Qt::ControlModifier);
        auto* dialog = window->findChild<SettingsDialog*>();
        EXPECT_NE(dialog, nullptr);
        return *dialog;
    }
};

template <typename Widget>
Widget* part(SettingsDialog& dialog, const char* name) {
    auto* found = dialog.findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

void expectSame(const RecordingPreferences& now, const RecordingPreferences& wanted) {
    EXPECT_EQ(now.folder, wanted.folder);
    EXPECT_EQ(now.split.pattern, wanted.split.pattern);
    EXPECT_EQ(now.noSplit.pattern, wanted.noSplit.pattern);
    EXPECT_EQ(now.isSplit, wanted.isSplit);
    EXPECT_EQ(now.splitMinutes, wanted.splitMinutes);
    EXPECT_EQ(now.splitDelayMs, wanted.splitDelayMs);
    EXPECT_EQ(now.isOverwriting, wanted.isOverwriting);
    EXPECT_EQ(now.isMp3ByteExact, wanted.isMp3ByteExact);
    EXPECT_EQ(now.isM4aUsed, wanted.isM4aUsed);
    EXPECT_EQ(now.isPauseShown, wanted.isPauseShown);
    EXPECT_EQ(now.hasBuffer, wanted.hasBuffer);
    EXPECT_EQ(now.bufferMegabytes, wanted.bufferMegabytes);
    EXPECT_EQ(now.encoder, wanted.encoder);
    EXPECT_EQ(now.bitrate, wanted.bitrate);
    EXPECT_EQ(now.mode, wanted.mode);
    EXPECT_EQ(now.isSameKept, wanted.isSameKept);
    EXPECT_EQ(now.isOriginalRemoved, wanted.isOriginalRemoved);
    EXPECT_EQ(now.arguments, wanted.arguments);
    EXPECT_EQ(now.hasTags, wanted.hasTags);
    EXPECT_EQ(now.hasTrackList, wanted.hasTrackList);
    EXPECT_EQ(now.trackListFormat, wanted.trackListFormat);
    EXPECT_EQ(now.isTrackListDated, wanted.isTrackListDated);
    EXPECT_EQ(now.isTitleListKept, wanted.isTitleListKept);
}

/// Changes every field to something that it was not.
void changeAll(SettingsDialog& dialog) {
    for (QCheckBox* box : dialog.findChildren<QCheckBox*>()) {
        box->toggle();
    }
    for (QComboBox* box : dialog.findChildren<QComboBox*>()) {
        box->setCurrentIndex(box->currentIndex() == 1 ? 0 : 1);
    }
    for (QSpinBox* box : dialog.findChildren<QSpinBox*>()) {
        box->setValue(box->value() + box->singleStep());
    }
    for (QLineEdit* field : dialog.findChildren<QLineEdit*>()) {
        if (!field->objectName().startsWith(QLatin1String("qt_"))) {
            field->setText(field->text() + QStringLiteral("x"));
        }
    }
}

} // namespace

/// Through the real settings file and back, every field by itself.
TEST_F(SettingsDialogTest, EveryFieldReachesTheFileAndComesBack) {
    DataFolder where;
    where.path = folder.path();
    where.applicationDir = folder.path();
    Preferences wanted;
    {
        AppSettings store(where);
        AppUiSettings preferences(store);
        SettingsDialog dialog(preferences.preferences(), languages, devices);
        QObject::connect(&dialog,
                         &SettingsDialog::sig_applied,
                         [&preferences](const Preferences& before, const Preferences& after) {
                             preferences.changePreferences(before, after);
                         });
        changeAll(dialog);
        wanted = dialog.preferences();
        dialog.accept();
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
    }
    AppSettings store(where);
    const Preferences now = AppUiSettings(store).preferences();
    EXPECT_EQ(now.languageFile, wanted.languageFile);
    EXPECT_EQ(now.theme, wanted.theme);
    EXPECT_EQ(now.isAutoPlaying, wanted.isAutoPlaying);
    EXPECT_EQ(now.isAskingOnExit, wanted.isAskingOnExit);
    EXPECT_EQ(now.areMultipleInstancesAllowed, wanted.areMultipleInstancesAllowed);
    EXPECT_EQ(now.isLogFileKept, wanted.isLogFileKept);
    EXPECT_EQ(now.tray.isShown, wanted.tray.isShown);
    EXPECT_EQ(now.tray.isPersistent, wanted.tray.isPersistent);
    EXPECT_EQ(now.tray.isHiddenOnClose, wanted.tray.isHiddenOnClose);
    EXPECT_EQ(now.tray.isHiddenOnMinimize, wanted.tray.isHiddenOnMinimize);
    EXPECT_EQ(now.tray.isHiddenAtStart, wanted.tray.isHiddenAtStart);
    EXPECT_EQ(now.tray.isMutedByClick, wanted.tray.isMutedByClick);
    EXPECT_EQ(now.tray.isToolTipUpdated, wanted.tray.isToolTipUpdated);
    EXPECT_EQ(now.tray.hasPopups, wanted.tray.hasPopups);
    EXPECT_EQ(now.fadeInSeconds, wanted.fadeInSeconds);
    EXPECT_EQ(now.fadeOutSeconds, wanted.fadeOutSeconds);
    EXPECT_EQ(now.bufferMs, wanted.bufferMs);
    EXPECT_EQ(now.attempts, wanted.attempts);
    EXPECT_EQ(now.patienceMinutes, wanted.patienceMinutes);
    EXPECT_EQ(now.outputDevice, QStringLiteral("Speakers"));
    EXPECT_EQ(now.recordingDevice, QStringLiteral("Microphone"));
    EXPECT_EQ(now.meter, wanted.meter);
    expectSame(now.recording, wanted.recording);
    EXPECT_EQ(now.proxy, wanted.proxy);
    EXPECT_TRUE(now.proxy.isInForce());
    EXPECT_FALSE(store.AllowMultipleInstances());
    EXPECT_TRUE(store.LanguageSet());
}

/// What nobody touched is not written: another instance may have changed it meanwhile.
TEST_F(SettingsDialogTest, OnlyWhatChangedIsStored) {
    DataFolder where;
    where.path = folder.path();
    where.applicationDir = folder.path();
    QString file;
    {
        AppSettings store(where);
        file = store.settingsFile();
        store.FadeInValue.set(900); // more than the dialog shows
        AppUiSettings preferences(store);
        SettingsDialog dialog(preferences.preferences(), languages, devices);
        QObject::connect(&dialog,
                         &SettingsDialog::sig_applied,
                         [&preferences](const Preferences& before, const Preferences& after) {
                             preferences.changePreferences(before, after);
                         });
        part<QSpinBox>(dialog, "attempts")->setValue(7);
        dialog.accept();
    }
    const QSettings written(file, QSettings::IniFormat);
    QStringList keys = written.allKeys();
    keys.removeAll(QStringLiteral("AppVersion"));
    EXPECT_EQ(keys, texts({"FadeInValue", "Retries"}));
    EXPECT_EQ(written.value(QStringLiteral("FadeInValue")).toInt(), 900);
}

TEST_F(SettingsDialogTest, FaultsAreSaidAndNothingIsStored) {
    SettingsDialog& dialog = openDialog();
    QSignalSpy applied(&dialog, &SettingsDialog::sig_applied);
    auto* note = part<QLabel>(dialog, "settingsNote");
    const auto refuses = [&](const char* text) {
        dialog.accept();
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(note->isVisible());
        EXPECT_TRUE(note->text().contains(QString::fromUtf8(text))) << note->text().toStdString();
        EXPECT_EQ(note->accessibleDescription(), note->text());
    };
    part<QLineEdit>(dialog, "patternSplit")->setText(QStringLiteral("  "));
    refuses("pattern is empty");
    part<QLineEdit>(dialog, "patternSplit")->setText(QStringLiteral("%track%"));
    EXPECT_FALSE(note->isVisible());
    part<QCheckBox>(dialog, "useProxy")->setChecked(true);
    refuses("needs the name");
    part<QLineEdit>(dialog, "proxyHost")->setText(QStringLiteral("http://proxy.example"));
    refuses("name only");
    EXPECT_EQ(applied.count(), 0);
    part<QLineEdit>(dialog, "proxyHost")->setText(QStringLiteral("proxy.example"));
    dialog.accept();
    EXPECT_EQ(applied.count(), 1);
    EXPECT_EQ(settings.stored.proxy.port, QStringLiteral("8080"));
}

TEST_F(SettingsDialogTest, ApplyOkAndCancel) {
    SettingsDialog& dialog = openDialog();
    QPushButton* apply = nullptr;
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        apply = button->text() == QLatin1String("Apply") ? button : apply;
    }
    ASSERT_NE(apply, nullptr);
    EXPECT_FALSE(apply->isEnabled());
    auto* theme = part<QComboBox>(dialog, "theme");
    theme->setCurrentIndex(2);
    EXPECT_TRUE(apply->isEnabled());
    apply->click();
    EXPECT_EQ(settings.storedTheme, ThemeChoice::Dark);
    EXPECT_TRUE(window->commands().themes.at(2)->isChecked());
    EXPECT_TRUE(dialog.isVisible());
    part<QComboBox>(dialog, "language")->setCurrentIndex(1);
    apply->click();
    EXPECT_TRUE(part<QLabel>(dialog, "settingsNote")->text().contains(QStringLiteral("next time")));
    theme->setCurrentIndex(1);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(settings.storedTheme, ThemeChoice::Dark);
    WavelarkStyle::install(ThemeChoice::Light); // for the tests after this one
}

TEST_F(SettingsDialogTest, EveryFieldHasANameAndIsReachedByKeys) {
    SettingsDialog& dialog = openDialog();
    auto* tabs = dialog.findChild<QTabWidget*>();
    part<QCheckBox>(dialog, "useProxy")->setChecked(true);
    part<QCheckBox>(dialog, "trayIcon")->setChecked(true);
    int checked = 0;
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        QSet<QWidget*> reached;
        tabs->setFocus();
        for (int n = 0; n < 40; ++n) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            reached.insert(dialog.focusWidget());
        }
        for (QWidget* field : tabs->currentWidget()->findChildren<QWidget*>()) {
            if (field->focusPolicy() == Qt::NoFocus || field->focusProxy() != nullptr ||
                field->objectName().startsWith(QLatin1String("qt_")) || !field->isEnabled()) {
                continue;
            }
            ++checked;
            const std::string name = field->objectName().toStdString();
            EXPECT_TRUE(reached.contains(field)) << name;
            EXPECT_FALSE(
                QAccessible::queryAccessibleInterface(field)->text(QAccessible::Name).isEmpty())
                << name;
        }
    }
    EXPECT_GT(checked, 25);
}

TEST_F(SettingsDialogTest, TheOutputDeviceMovesAtOnceAndAMissingOneStaysChosen) {
    player.devices.outputs = texts({"Speakers"});
    settings.stored.outputDevice = QStringLiteral("Headset");
    SettingsDialog& dialog = openDialog();
    auto* box = part<QComboBox>(dialog, "outputDevice");
    EXPECT_EQ(box->currentText(), QStringLiteral("Headset (not there now)"));
    EXPECT_EQ(dialog.preferences().outputDevice, QStringLiteral("Headset"));
    player.deviceFault = QStringLiteral("Failed to initialize sound libraries");
    box->setCurrentIndex(box->findText(QStringLiteral("Speakers")));
    dialog.accept();
    EXPECT_EQ(player.calls, texts({"device Speakers"}));
    EXPECT_EQ(child<QLabel>("messageText")->text(), player.deviceFault);
}
