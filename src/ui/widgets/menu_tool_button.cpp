#include "ui/widgets/menu_tool_button.h"

#include <QKeyEvent>

MenuToolButton::MenuToolButton(QWidget* parent) : QToolButton(parent) {
    setPopupMode(QToolButton::MenuButtonPopup);
}

void MenuToolButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down && menu() != nullptr) {
        showMenu();
        return;
    }
    QToolButton::keyPressEvent(event);
}
