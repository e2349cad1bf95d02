#include "ui/widgets/address_bar.h"

#include "ui/theme/icons.h"
#include "ui/theme/wavelark_style.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

AddressBar::AddressBar(QWidget* parent)
    : QWidget(parent), m_field(new QLineEdit(this)), m_button(new QToolButton(this)) {
    m_field->setObjectName(QStringLiteral("addressField"));
    m_field->setPlaceholderText(tr("Address of a station – paste it and press Enter"));
    m_field->setAccessibleName(tr("Address of a station"));
    m_field->setAccessibleDescription(tr("Press Enter to play the station at this address"));
    m_field->setClearButtonEnabled(true);
    m_field->setMinimumHeight(36);
    m_field->addAction(icon(QStringLiteral("link"), IconTone::Quiet), QLineEdit::LeadingPosition);

    m_button->setObjectName(QStringLiteral("addressPlay"));
    m_button->setIcon(icon(QStringLiteral("play")));
    m_button->setToolTip(tr("Play this address"));
    m_button->setAccessibleName(tr("Play this address"));
    m_button->setFixedSize(40, 36);
    m_button->setProperty(WavelarkStyle::kRaisedProperty, true);
    m_button->setFocusPolicy(Qt::StrongFocus);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 8);
    layout->addWidget(m_field);
    layout->addWidget(m_button);

    connect(m_field, &QLineEdit::returnPressed, this, &AddressBar::request);
    connect(m_button, &QToolButton::clicked, this, &AddressBar::request);
}

void AddressBar::focusField() {
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

void AddressBar::setAddress(const QString& address) {
    if (!m_field->hasFocus()) {
        m_field->setText(address);
        m_field->setCursorPosition(0);
    }
}

void AddressBar::request() {
    emit sig_playRequested(m_field->text());
}
