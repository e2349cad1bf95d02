#include "app/language_manager.h"
#include "ui/commands.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/dialogs/sound_dialog.h"
#include "ui/window_fixture.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>

#include <memory>

namespace {

/// A window in the language of a file, as the program makes it at start.
class LanguageTest : public WindowTest {
  protected:
    void speak(const char* file) {
        m_manager =
            std::make_unique<LanguageManager>(QStringList(QStringLiteral(WAVELARK_LANGUAGES)));
        ASSERT_TRUE(m_manager->load(QString::fromLatin1(file)));
        languages = m_manager->languages();
    }
    ~LanguageTest() override { window.reset(); } // before its language

  private:
    std::unique_ptr<LanguageManager> m_manager;
};

/// Every text that a person reads in the widgets below this one.
QStringList readableTexts(const QWidget& root) {
    QStringList found;
    const QList<QWidget*> widgets = root.findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
            found.append(button->text());
        } else if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            found.append(label->text());
        }
        found.append({widget->accessibleName(), widget->toolTip()});
    }
    const QList<QAction*> actions = root.findChildren<QAction*>();
    for (const QAction* action : actions) {
        found.append(action->text());
    }
    found.removeAll({});
    found.removeDuplicates();
    return found;
}

/// Texts with a word in them that are the same in both.
QStringList sameWords(const QStringList& one, const QStringList& other) {
    QStringList same;
    for (const QString& text : one) {
        const bool hasWord =
            std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
        if (hasWord && other.contains(text)) {
            same.append(text);
        }
    }
    return same;
}

/// The key behind "&"; null: none.
QChar mnemonic(const QString& text) {
    const int at = text.indexOf(QLatin1Char('&'));
    return at >= 0 && at + 1 < text.size() ? text.at(at + 1).toUpper() : QChar();
}

/// Texts that share a key with one before them.
QStringList clashes(const QStringList& texts) {
    QSet<QChar> seen;
    QStringList found;
    for (const QString& text : texts) {
        const QChar key = mnemonic(text);
        if (!key.isNull() && seen.contains(key)) {
            found.append(text);
        }
        seen.insert(key);
    }
    return found;
}

QStringList textsOf(const QList<QAction*>& actions) {
    QStringList found;
    for (const QAction* action : actions) {
        found.append(action->text());
    }
    return found;
}

} // namespace

/// A key that two entries share is one that neither has for sure.
TEST_F(LanguageTest, MnemonicsAreUnique) {
    for (const char* file : {"English.lng", "German.lng"}) {
        SCOPED_TRACE(file);
        speak(file);
        open();
        EXPECT_EQ(clashes(textsOf(window->menuBar()->actions())), QStringList());
        for (const QMenu* menu : window->menuBar()->findChildren<QMenu*>()) {
            EXPECT_EQ(clashes(textsOf(menu->actions())), QStringList());
        }
        SettingsDialog dialog(settings.stored, languages, {});
        const auto* tabs = dialog.findChild<QTabWidget*>();
        for (int tab = 0; tab < tabs->count(); ++tab) {
            QStringList onPage = readableTexts(*tabs->widget(tab));
            for (int other = 0; other < tabs->count(); ++other) {
                onPage.append(tabs->tabText(other));
            }
            EXPECT_EQ(clashes(onPage), QStringList());
        }
        window->commands().sound->trigger();
        EXPECT_EQ(clashes(readableTexts(*window->findChild<SoundDialog*>())), QStringList());
        window.reset();
    }
}

TEST_F(LanguageTest, TheWholeWindowIsGerman) {
    open();
    const QStringList english = readableTexts(*window);
    window.reset();
    speak("german.lng");
    open();
    const QStringList german = readableTexts(*window);
    EXPECT_GT(german.size(), 60);
    QStringList same = sameWords(german, english);
    for (const char* name : {"Deutsch", "English"}) {
        same.removeAll(QString::fromLatin1(name));
    }
    EXPECT_EQ(same, QStringList());
    EXPECT_EQ(child("volumeSlider")->accessibleName(), QString::fromUtf8("Lautstärke"));
    EXPECT_EQ(text("playButton"), QStringLiteral("Abspielen"));
    QStringList menus;
    for (const QAction* menu : window->menuBar()->actions()) {
        menus.append(QString(menu->text()).remove(QLatin1Char('&')));
    }
    EXPECT_EQ(menus, texts({"Sender", "Aufnahme", "Ton", "Ansicht", "Extras", "Hilfe"}));
}

/// The toolkit's own texts come from the second file.
TEST_F(LanguageTest, DialogsOfTheToolkitAreGerman) {
    const auto dialogTexts = [] {
        QFileDialog files(nullptr, QString(), QDir::tempPath());
        files.setOption(QFileDialog::DontUseNativeDialog);
        files.setFileMode(QFileDialog::Directory);
        QStringList found = readableTexts(files);
        QDialogButtonBox buttons;
        for (int button = QDialogButtonBox::FirstButton; button <= QDialogButtonBox::LastButton;
             button <<= 1) {
            buttons.addButton(static_cast<QDialogButtonBox::StandardButton>(button));
        }
        found += readableTexts(buttons);
        QLineEdit line;
        line.setText(QStringLiteral("x"));
        const std::unique_ptr<QMenu> menu(line.createStandardContextMenu());
        for (const QAction* action : menu->actions()) {
            found.append(action->text().section(QLatin1Char('\t'), 0, 0));
        }
        found.append(
            QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_Delete).toString(QKeySequence::NativeText));
        return found;
    };
    const QStringList english = dialogTexts();
    speak("German.lng");
    const QStringList german = dialogTexts();
    EXPECT_TRUE(german.contains(QStringLiteral("Abbrechen")));
    EXPECT_TRUE(german.contains(QStringLiteral("Strg+Umschalt+Entf")));
    QStringList same = sameWords(german, english);
    same.removeAll(QStringLiteral("OK"));
    same.removeAll(QStringLiteral("&OK"));
    EXPECT_EQ(same, QStringList());
}

TEST_F(LanguageTest, TheMenuStoresTheChoiceAndSaysWhenItCounts) {
    speak("English.lng");
    open();
    const QVector<QAction*>& choices = window->commands().languages;
    ASSERT_EQ(choices.size(), 2);
    EXPECT_EQ(choices.at(0)->text(), QStringLiteral("Deutsch"));
    EXPECT_TRUE(choices.at(1)->isChecked());
    choices.at(0)->trigger();
    EXPECT_EQ(settings.language, QStringLiteral("German.lng"));
    EXPECT_EQ(text("messageBar"),
              QStringLiteral("The language changes when Wavelark starts the next time."));
    EXPECT_EQ(text("playButton"), QStringLiteral("Play"));
}
