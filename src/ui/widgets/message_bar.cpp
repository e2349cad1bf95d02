#include "ui/widgets/message_bar.h"

#include "ui/announcer.h"
#include "ui/theme/icons.h"
#include "ui/theme/theme.h"
#include "ui/theme/wavelark_style.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace {

constexpr int kNarrow = 600;

} // namespace

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent), m_icon(new QLabel(this)), m_text(new QLabel(this)),
      m_action(new QPushButton(this)), m_close(new QPushButton(tr("Close"), this)),
      m_row(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    setObjectName(QStringLiteral("messageBar"));
    m_text->setObjectName(QStringLiteral("messageText"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_action->setObjectName(QStringLiteral("messageAction"));
    m_action->setProperty(WavelarkStyle::kFilledProperty, true);
    m_close->setObjectName(QStringLiteral("messageClose"));
    m_close->setAccessibleName(tr("Close the message"));

    auto* said = new QHBoxLayout;
    said->setSpacing(10);
    said->addWidget(m_icon, 0, Qt::AlignTop);
    said->addWidget(m_text, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_action);
    buttons->addWidget(m_close);
    m_row->setContentsMargins(14, 8, 12, 8);
    m_row->addLayout(said, 1);
    m_row->addLayout(buttons);

    connect(m_action, &QPushButton::clicked, this, &MessageBar::act);
    connect(m_close, &QPushButton::clicked, this, &MessageBar::clear);
    hide();
}

void MessageBar::showMessage(const Message& message) {
    m_message = message;
    m_text->setText(message.text);
    m_action->setVisible(!message.actionText.isEmpty());
    m_action->setText(message.actionText);
    m_action->setAccessibleName(message.actionText);
    updateIcon();
    setAccessibleName(message.kind == Message::Kind::Error ? tr("Error: %1").arg(message.text)
                                                           : message.text);
    show();
    update();
    announce(this,
             accessibleName(),
             message.kind == Message::Kind::Error ? Urgency::Alert : Urgency::Polite);
}

void MessageBar::clear() {
    m_message = {};
    hide();
}

void MessageBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Accents& accents = accentsFor(palette());
    const bool isError = m_message.kind == Message::Kind::Error;
    painter.fillRect(rect(),
                     isError ? accents.errorBack : palette().color(QPalette::AlternateBase));
    painter.fillRect(0, 0, width(), 1, accents.line);
    painter.fillRect(
        0, 0, 4, height(), isError ? accents.error : palette().color(QPalette::Highlight));
}

void MessageBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        clear();
        return;
    }
    QFrame::keyPressEvent(event);
}

void MessageBar::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    m_row->setDirection(width() < kNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void MessageBar::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        updateIcon();
    }
}

void MessageBar::act() {
    const std::function<void()> action = m_message.action;
    clear();
    if (action) {
        action();
    }
}

void MessageBar::updateIcon() {
    const bool isError = m_message.kind == Message::Kind::Error;
    const QIcon picture =
        isError ? icon(QStringLiteral("error"), IconTone::Error) : icon(QStringLiteral("info"));
    m_icon->setPixmap(picture.pixmap(QSize(20, 20)));
}
