#pragma once

#include "ui/message.h"

#include <QWidget>

/// One of the views in the middle of the window.
///
/// *Thread*: GUI. *Owner*: the window's stack of pages.
class Page : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Page)

  public:
    using QWidget::QWidget;

    /// Ctrl+F: the line that narrows the view down.
    virtual void focusFilter() = 0;
    /// The place where the keyboard goes when the page is chosen.
    virtual void focusContent() = 0;

  signals:
    void sig_message(const Message& message);
};
