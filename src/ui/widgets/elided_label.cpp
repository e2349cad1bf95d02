#include "ui/widgets/elided_label.h"

#include "ui/widgets/tool_tip.h"

#include <QEvent>

ElidedLabel::ElidedLabel(Tone tone, QWidget* parent) : QLabel(parent), m_tone(tone) {
    setTextFormat(Qt::PlainText); // titles come from outside: never markup
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    applyTone();
}

void ElidedLabel::setFullText(const QString& text) {
    const QString line = text.simplified();
    if (line == m_full) {
        return;
    }
    m_full = line;
    setAccessibleName(line);
    updateGeometry();
    elide();
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 6, QLabel::minimumSizeHint().height()};
}

QSize ElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(m_full) + 2, QLabel::sizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (m_isApplyingTone) {
        return;
    }
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        applyTone();
        elide();
    }
}

void ElidedLabel::elide() {
    const QString shown = fontMetrics().elidedText(m_full, Qt::ElideRight, width());
    setText(shown);
    setToolTip(shown == m_full ? QString() : plainToolTip(m_full));
}

void ElidedLabel::applyTone() {
    m_isApplyingTone = true;
    if (m_tone == Tone::Strong) {
        QFont strong = font();
        strong.setWeight(QFont::DemiBold);
        setFont(strong);
    } else if (m_tone == Tone::Quiet) {
        setForegroundRole(QPalette::PlaceholderText); // the palettes' quiet text
    }
    m_isApplyingTone = false;
}
