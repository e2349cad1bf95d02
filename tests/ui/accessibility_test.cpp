#include "ui/commands.h"
#include "ui/window_fixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QApplication>
#include <QDialog>

namespace {

bool isInteractive(const QWidget* widget) {
    return qobject_cast<const QAbstractButton*>(widget) != nullptr ||
           qobject_cast<const QLineEdit*>(widget) != nullptr ||
           qobject_cast<const QAbstractSlider*>(widget) != nullptr ||
           qobject_cast<const QAbstractItemView*>(widget) != nullptr;
}

/// Parts that Qt makes inside of its own widgets and serves by the widget around them.
bool isInnerPart(const QWidget* widget) {
    return widget->objectName().startsWith(QLatin1String("qt_")) ||
           widget->inherits("QScrollBar") || widget->inherits("QLineEditIconButton");
}

QSet<QWidget*> reachedByTab(QWidget* window) {
    QSet<QWidget*> reached;
    for (int n = 0; n < 200; ++n) {
        QWidget* focus = QApplication::focusWidget();
        if (focus != nullptr) {
            reached.insert(focus);
        }
        QTest::keyClick(focus != nullptr ? focus : window, Qt::Key_Tab);
    }
    return reached;
}

} // namespace

TEST_F(WindowTest, EveryControlHasANameAndIsReachedByKeys) {
    played.add(BASS::stationFromAddress(QStringLiteral("http://one.example/")));
    open();
    playAddress(QStringLiteral("http://one.example/"));
    player.becomePlaying();
    press(Qt::Key_R, Qt::ControlModifier);
    window->showMessage(
        {Message::Kind::Error, QStringLiteral("Text"), QStringLiteral("Try again"), [] {}});
    int checked = 0;
    for (QAction* page : window->commands().pages) {
        page->trigger();
        const QSet<QWidget*> reached = reachedByTab(window.get());
        const QList<QWidget*> widgets = window->findChildren<QWidget*>();
        for (QWidget* widget : widgets) {
            if (!widget->isVisible() || !isInteractive(widget) || isInnerPart(widget)) {
                continue;
            }
            ++checked;
            const std::string name =
                widget->objectName().toStdString() + " " + widget->metaObject()->className();
            const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(interface, nullptr) << name;
            EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty()) << name;
            EXPECT_TRUE(!widget->isEnabled() || reached.contains(widget)) << name;
        }
    }
    EXPECT_GT(checked, 30);
}

TEST_F(WindowTest, RowsOfListsHaveAText) {
    played.add(
        BASS::stationFromAddress(QStringLiteral("http://one.example/"), QStringLiteral("One")));
    open();
    const QList<QAbstractItemView*> views = window->findChildren<QAbstractItemView*>();
    for (const QAbstractItemView* view : views) {
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            const QModelIndex index = view->model()->index(row, 0);
            EXPECT_FALSE(index.data(Qt::AccessibleTextRole).toString().isEmpty());
        }
    }
}

/// A platform without screen reader swallows the events themselves; the text they carry stays.
TEST_F(WindowTest, ChangesAreAnnounced) {
    open();
    const auto said = [this](const char* name) { return child(name)->accessibleDescription(); };
    playAddress(QStringLiteral("http://one.example/"));
    player.becomePlaying();
    player.sendTitle(QStringLiteral("Artist - Song"));
    EXPECT_EQ(said("playerBar"), QStringLiteral("Artist - Song"));
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(said("playerBar"), QStringLiteral("Recording started"));
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(said("playerBar"), QStringLiteral("Recording stopped"));
    player.failToConnect(QStringLiteral("Failed to connect at this time"));
    EXPECT_EQ(said("messageBar"), QStringLiteral("Error: Failed to connect at this time"));
}

TEST_F(WindowTest, HelpListsTheShortcuts) {
    open();
    press(Qt::Key_F1);
    auto* dialog = window->findChild<QDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    const auto* table = dialog->findChild<QAbstractItemView*>();
    QStringList keys;
    for (int row = 0; row < table->model()->rowCount(); ++row) {
        keys.append(table->model()->index(row, 1).data().toString());
    }
    for (const QAction* command : window->commands().all()) {
        const QString text = command->shortcut().toString(QKeySequence::NativeText);
        EXPECT_TRUE(text.isEmpty() || keys.contains(text)) << text.toStdString();
    }
    dialog->close();
}
