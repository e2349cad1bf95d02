#pragma once

#include <QWidget>

class QLineEdit;
class QToolButton;

/// The field for an address, and the button that plays it.
class AddressBar final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AddressBar)

  public:
    explicit AddressBar(QWidget* parent = nullptr);

    void focusField();
    void setAddress(const QString& address);

  signals:
    /// Enter or the button: the text as it stands.
    void sig_playRequested(const QString& text);

  private:
    void request();

    QLineEdit* m_field;
    QToolButton* m_button;
};
