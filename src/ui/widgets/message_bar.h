#pragma once

#include "ui/message.h"

#include <QFrame>

class QBoxLayout;
class QLabel;
class QPushButton;

/// One message at a time, above the player bar, until it is closed, acted on or replaced.
class MessageBar final : public QFrame {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessageBar)

  public:
    explicit MessageBar(QWidget* parent = nullptr);

    /// Shows it instead of what is shown now, and tells screen readers.
    void showMessage(const Message& message);
    void clear();
    [[nodiscard]] const Message& message() const { return m_message; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void act();
    void updateIcon();

    Message m_message;
    QLabel* m_icon;
    QLabel* m_text;
    QPushButton* m_action;
    QPushButton* m_close;
    QBoxLayout* m_row;
};
