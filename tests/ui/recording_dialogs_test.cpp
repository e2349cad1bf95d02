#include "app/app_settings.h"
#include "ui/app_ui_settings.h"
#include "ui/commands.h"
#include "ui/controllers/record_controller.h"
#include "ui/dialogs/encoding_settings_page.h"
#include "ui/dialogs/recording_file_pattern.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/window_fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>

namespace {

using BASS::RecordMode;

class RecordCommandsTest : public WindowTest {
  protected:
    void play() {
        open();
        playAddress(QStringLiteral("http://radio.example/live"));
        player.becomePlaying();
        player.calls.clear();
    }
    BASS::RecordingProgress progress() {
        BASS::RecordingProgress now;
        now.path = settings.folder + QStringLiteral("/Song.mp3");
        now.files = 1;
        now.fileBytes = 1000000;
        now.fileDuration = std::chrono::seconds(60);
        return now;
    }
};

class PatternDialogTest : public WindowTest {
  protected:
    static RecordingFilePattern::Choice choice(const char* pattern) {
        RecordingFilePattern::Choice result;
        result.names.pattern = QString::fromLatin1(pattern);
        return result;
    }
};

} // namespace

TEST_F(PatternDialogTest, OutputFollowsEveryKeystroke) {
    RecordingFilePattern dialog(choice(""));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("File Pattern"));
    auto* pattern = dialog.findChild<QLineEdit*>(QStringLiteral("pattern"));
    auto* output = dialog.findChild<QLabel*>(QStringLiteral("testOutput"));
    EXPECT_EQ(output->text(), QString()); // an empty pattern gives no name and cannot be taken
    QStringList shown;
    for (const QChar key : QStringLiteral("%city%\\%artist%")) {
        QTest::keyClick(pattern, key.toLatin1());
        shown << QDir::fromNativeSeparators(output->text());
    }
    EXPECT_EQ(shown.last(), QStringLiteral("Hamburg/The Lamplighters.mp3"));
    EXPECT_TRUE(shown.contains(QStringLiteral("%city.mp3")));
    EXPECT_TRUE(output->accessibleName().contains(output->text()));
    pattern->setText(QStringLiteral("%date% %time%"));
    const QString before = output->text();
    auto* date = dialog.findChild<QComboBox*>(QStringLiteral("dateFormat"));
    date->setCurrentIndex(date->currentIndex() + 1);
    EXPECT_NE(output->text(), before);
}

TEST_F(PatternDialogTest, PlaceholdersPresetsAndFormatsAreTheKnownOnes) {
    RecordingFilePattern dialog(choice("ab"));
    auto* pattern = dialog.findChild<QLineEdit*>(QStringLiteral("pattern"));
    auto* list = dialog.findChild<QListWidget*>(QStringLiteral("placeholders"));
    auto* insert = dialog.findChild<QPushButton*>(QStringLiteral("insertPlaceholder"));
    QStringList lines;
    for (int row = 0; row < list->count(); ++row) {
        lines << list->item(row)->text();
        pattern->setText(QStringLiteral("ab"));
        pattern->setCursorPosition(1);
        list->setCurrentRow(row);
        insert->click();
        const QString placeholder = lines.last().section(QStringLiteral(" - "), 0, 0);
        EXPECT_EQ(pattern->text(), QLatin1Char('a') + placeholder + QLatin1Char('b'));
    }
    EXPECT_EQ(lines.first(), QStringLiteral("%title% - Station name"));
    EXPECT_EQ(lines.last(), QStringLiteral("\\ - Folder"));
    EXPECT_TRUE(lines.contains(QStringLiteral("%song_title% - Song/Track title")));
    auto* presets = dialog.findChild<QComboBox*>(QStringLiteral("presets"));
    ASSERT_EQ(presets->count(), 6);
    presets->setFocus();
    emit presets->activated(2);
    EXPECT_EQ(pattern->text(), QStringLiteral("%title%\\%track%"));
    const RecordingPreferences::Names names = dialog.names();
    EXPECT_EQ(names.dateFormat, QStringLiteral("dd.MMM.yyyy"));
    EXPECT_EQ(names.timeFormat, QStringLiteral("h.mm.ss AP"));
    EXPECT_EQ(dialog.findChild<QComboBox*>(QStringLiteral("dateFormat"))->count(), 8);
    EXPECT_EQ(dialog.findChild<QComboBox*>(QStringLiteral("timeFormat"))->count(), 4);
}

/// What a hand wrote into the settings is shown and goes back as it was.
TEST_F(PatternDialogTest, ForeignFormatsStay) {
    auto foreign = choice("%date%");
    foreign.names.dateFormat = QStringLiteral("yyyy-MM-dd");
    foreign.names.timeFormat = QStringLiteral("hh");
    const RecordingPreferences::Names names = RecordingFilePattern(foreign).names();
    EXPECT_EQ(names.dateFormat, foreign.names.dateFormat);
    EXPECT_EQ(names.timeFormat, foreign.names.timeFormat);
}

TEST_F(PatternDialogTest, TheSettingsPageTakesWhatTheEditorGives) {
    settings.stored.recording.split = {QStringLiteral("%track%"), {}, {}};
    settings.stored.recording.noSplit = {QStringLiteral("%title%"), {}, {}};
    open();
    press(Qt::Key_Comma, Qt::ControlModifier);
    auto* dialog = window->findChild<SettingsDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QPushButton*>(QStringLiteral("editSplit"))->click();
    auto* editor = dialog->findChild<RecordingFilePattern*>();
    ASSERT_NE(editor, nullptr);
    auto* time = editor->findChild<QComboBox*>(QStringLiteral("timeFormat"));
    time->setCurrentIndex(0);
    editor->accept();
    dialog->accept();
    EXPECT_EQ(settings.stored.recording.split.timeFormat, QStringLiteral("hh.mm"));
    EXPECT_EQ(settings.stored.recording.split.pattern, QStringLiteral("%track%"));
    EXPECT_EQ(settings.stored.recording.noSplit.timeFormat, QString());
}

TEST_F(PatternDialogTest, EachProgramKeepsItsOwnArguments) {
    EncodingSettingsPage page;
    RecordingPreferences preferences;
    preferences.encoder = 1;
    preferences.arguments = {{1, QStringLiteral("-h - -")}, {4, QStringLiteral("-q 7")}};
    page.fill(preferences);
    auto* encoder = page.findChild<QComboBox*>(QStringLiteral("encoder"));
    auto* arguments = page.findChild<QLineEdit*>(QStringLiteral("encoderArguments"));
    EXPECT_EQ(arguments->text(), QStringLiteral("-h - -"));
    arguments->setText(QStringLiteral("-f - -"));
    encoder->setCurrentIndex(encoder->findData(4));
    EXPECT_EQ(arguments->text(), QStringLiteral("-q 7"));
    encoder->setCurrentIndex(encoder->findData(2)); // WMA has no program
    EXPECT_FALSE(arguments->isEnabled());
    RecordingPreferences read;
    page.read(read);
    EXPECT_EQ(read.encoder, 2);
    EXPECT_EQ(read.arguments.value(1), QStringLiteral("-f - -"));
    EXPECT_EQ(read.arguments.value(4), QStringLiteral("-q 7"));
    EXPECT_EQ(read.bitrate, 196); // not one of those on offer, and kept
}

TEST_F(RecordCommandsTest, KeepLastTitleSaysWhenItCannot) {
    play();
    const Commands& commands = window->commands();
    EXPECT_TRUE(commands.recordKeepLast->isEnabled());
    player.canKeepLast = false;
    QSignalSpy messages(window.get(), &AllSkylarkRadio::sig_messageShown);
    commands.recordKeepLast->trigger();
    EXPECT_EQ(player.calls, texts({"keep last"}));
    EXPECT_EQ(player.options.mode, RecordMode::SingleSong);
    ASSERT_EQ(messages.count(), 1);
    player.canKeepLast = true;
    commands.recordKeepLast->trigger();
    EXPECT_EQ(messages.count(), 1);
    commands.recordToggle->trigger();
    EXPECT_FALSE(commands.recordKeepLast->isEnabled()); // the buffer is in the recording
}

TEST_F(RecordCommandsTest, PauseAndResume) {
    settings.hasPauseButton = true;
    play();
    const Commands& commands = window->commands();
    EXPECT_FALSE(commands.recordPause->isEnabled());
    commands.recordToggle->trigger();
    emit player.sig_recordingProgress(progress());
    EXPECT_TRUE(child<QToolButton>("pauseRecording")->isVisible());
    child<QToolButton>("pauseRecording")->click();
    EXPECT_EQ(commands.recordPause->text(), QStringLiteral("Resume recording"));
    EXPECT_TRUE(text("recordingFile").contains(QStringLiteral("paused")))
        << text("recordingFile").toStdString();
    commands.recordPause->trigger();
    EXPECT_EQ(commands.recordPause->text(), QStringLiteral("Pause recording"));
    EXPECT_EQ(player.calls, texts({"record", "pause", "resume"}));
}

TEST_F(RecordCommandsTest, TheRecordButtonDoesWhatTheSettingsSay) {
    for (const bool isSplitting : {true, false}) {
        settings.isSplitting = isSplitting;
        play();
        window->commands().recordToggle->trigger();
        EXPECT_EQ(player.options.mode, isSplitting ? RecordMode::Split : RecordMode::NoSplit);
        window.reset();
        player.finishRecording();
    }
}

TEST_F(RecordCommandsTest, RoomThatIsLeftIsShown) {
    play();
    window->commands().recordToggle->trigger();
    const struct {
        std::chrono::seconds left;
        const char* shown;
    } cases[] = {{std::chrono::seconds(-1), ""},
                 {std::chrono::seconds(65), "room for 1:05"},
                 {std::chrono::hours(30), "room for 30:00:00"},
                 {std::chrono::hours(24 * 12), "room for 12 days"}};
    for (const auto& c : cases) {
        BASS::RecordingProgress now = progress();
        now.remaining = c.left;
        emit player.sig_recordingProgress(now);
        EXPECT_TRUE(text("recordingNumbers").endsWith(QString::fromLatin1(c.shown)))
            << text("recordingNumbers").toStdString();
        EXPECT_EQ(text("recordingNumbers").contains(QStringLiteral("room")), *c.shown != 0);
    }
}

TEST_F(RecordCommandsTest, BoostIsAskedAboutOnlyWhereItMatters) {
    const struct {
        int encoder;
        bool isOn;
        const char* schedule;
        bool isAnswerYes;
        QStringList done;
    } cases[] = {
        {0, true, "", true, texts({"record"})},
        {1, false, "", true, texts({"record"})},
        {1, true, "Evening", true, texts({"record"})}, // nobody is there to answer
        {1, true, "", true, texts({"ask", "off", "record", "on"})},
        {1, true, "", false, texts({"ask", "record"})},
    };
    for (const auto& c : cases) {
        settings.encoder = c.encoder;
        play();
        const auto isOn = [&c] { return c.isOn; };
        const auto setOn = [this](bool on) {
            player.calls << (on ? QStringLiteral("on") : QStringLiteral("off"));
        };
        const auto ask = [this, &c](const QString& text, const std::function<void(bool)>& done) {
            EXPECT_EQ(text.toStdString(),
                      "Dynamic boost can sometimes distort recordings when encoding.\n\nDo you "
                      "wish to temporarily turn off dynamic boost?");
            player.calls << QStringLiteral("ask");
            done(c.isAnswerYes);
        };
        RecordController& record = window->recordController();
        record.setBoostControl({isOn, setOn, ask});
        record.start(RecordMode::Split, QString::fromLatin1(c.schedule));
        player.finishRecording();
        EXPECT_EQ(player.calls, c.done);
        window.reset();
        player.calls.clear();
    }
}
