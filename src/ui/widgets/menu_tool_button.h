#pragma once

#include <QToolButton>

/// A button with a menu behind its arrow that the keyboard reaches too: Down opens the menu.
class MenuToolButton final : public QToolButton {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MenuToolButton)

  public:
    explicit MenuToolButton(QWidget* parent = nullptr);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};
