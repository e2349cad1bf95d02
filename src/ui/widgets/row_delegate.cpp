#include "ui/widgets/row_delegate.h"

#include "ui/models/list_roles.h"
#include "ui/theme/style_painting.h"
#include "ui/theme/theme.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int kMargin = 14;
constexpr int kPadding = 6;
constexpr int kGap = 10;

void drawText(QPainter* painter,
              const QStyleOptionViewItem& option,
              const QRect& area,
              const QString& text,
              Qt::Alignment side) {
    const Qt::Alignment visual = QStyle::visualAlignment(option.direction, side | Qt::AlignVCenter);
    const QRect place = QStyle::visualRect(option.direction, option.rect, area);
    const QString shown = painter->fontMetrics().elidedText(text, Qt::ElideRight, place.width());
    painter->drawText(place, static_cast<int>(visual) | Qt::TextSingleLine, shown);
}

} // namespace

RowDelegate::RowDelegate(Lines lines, QObject* parent)
    : QStyledItemDelegate(parent), m_lines(lines) {}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option,
                            const QModelIndex& /*index*/) const {
    const int lines = m_lines == Lines::Two ? 2 : 1;
    return {120, option.fontMetrics.height() * lines + 2 * kPadding};
}

void RowDelegate::paint(QPainter* painter,
                        const QStyleOptionViewItem& given,
                        const QModelIndex& index) const {
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    const QPalette& palette = option.palette;
    const Accents& accents = accentsFor(palette);
    const bool isSelected = isItemStrong(option, option.widget);
    const QColor selectedText = palette.color(QPalette::HighlightedText);

    painter->save();
    QApplication::style()->drawPrimitive(
        QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    const int height =
        m_lines == Lines::Two ? option.fontMetrics.height() : option.rect.height() - 2 * kPadding;
    QRect line(option.rect.left() + kMargin,
               option.rect.top() + kPadding,
               option.rect.width() - 2 * kMargin,
               height);

    painter->setFont(option.font);
    const QString trailing = index.data(TrailingRole).toString();
    const int wanted = trailing.isEmpty() ? 0 : option.fontMetrics.horizontalAdvance(trailing) + 2;
    const int taken = wanted < line.width() / 2 ? wanted : 0; // no room: the first line has it all
    painter->setPen(isSelected ? selectedText : accents.quietText);
    drawText(painter,
             option,
             QRect(line.right() - taken, line.top(), taken, height),
             trailing,
             Qt::AlignRight);
    if (m_lines == Lines::Two) {
        drawText(painter,
                 option,
                 line.translated(0, height),
                 index.data(SecondLineRole).toString(),
                 Qt::AlignLeft);
    }

    const bool isError = index.data(ErrorRole).toBool();
    painter->setPen(isSelected ? selectedText
                    : isError  ? accents.error
                               : palette.color(QPalette::Text));
    QFont font = option.font;
    font.setWeight(m_lines == Lines::Two || isError ? QFont::DemiBold : QFont::Normal);
    painter->setFont(font);
    line.setWidth(line.width() - taken - (taken > 0 ? kGap : 0));
    drawText(painter, option, line, index.data(Qt::DisplayRole).toString(), Qt::AlignLeft);

    if (option.state.testFlag(QStyle::State_HasFocus)) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.rect = option.rect.adjusted(2, 0, -2, 0);
        QApplication::style()->drawPrimitive(
            QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
    painter->restore();
}
