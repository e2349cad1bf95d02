#include "ui/widgets/navigation_list.h"

#include "ui/theme/icons.h"
#include "ui/theme/style_painting.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

namespace {

constexpr int kWide = 216;
constexpr int kCompact = 52;
constexpr int kRow = 42;
constexpr int kIcon = 20;
constexpr int kMargin = (kCompact - kIcon) / 2; ///< the icon is in the middle of the compact list
constexpr int kGap = 12;

/// An icon with a text beside it, or alone where there is no room.
class NavigationDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& given,
               const QModelIndex& index) const override {
        QStyleOptionViewItem option = given;
        initStyleOption(&option, index);
        const QStyle* style = option.widget->style();
        style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
        const bool isSelected = isItemStrong(option, option.widget);
        const auto place = [&option](const QRect& area) {
            return QStyle::visualRect(option.direction, option.rect, area);
        };
        QRect area = option.rect.adjusted(kMargin, 0, -kGap, 0);
        QRect picture(area.left(), area.top() + (area.height() - kIcon) / 2, kIcon, kIcon);
        option.icon.paint(
            painter, place(picture), Qt::AlignCenter, isSelected ? QIcon::Selected : QIcon::Normal);
        area.setLeft(picture.right() + kGap);
        painter->setPen(
            option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::WindowText));
        painter->drawText(place(area),
                          Qt::AlignVCenter | Qt::AlignLeading,
                          option.fontMetrics.elidedText(option.text, Qt::ElideRight, area.width()));
        if (option.state.testFlag(QStyle::State_HasFocus)) {
            QStyleOption focus = option;
            focus.rect = option.rect.adjusted(2, 0, -2, 0);
            style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
        }
    }
};

} // namespace

NavigationList::NavigationList(const PageRegistry& pages, QWidget* parent)
    : QListView(parent), m_model(new QStandardItemModel(this)) {
    setObjectName(QStringLiteral("navigation"));
    setAccessibleName(tr("Pages"));
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setItemDelegate(new NavigationDelegate(this));
    setMouseTracking(true);
    setFixedWidth(kWide);
    viewport()->setBackgroundRole(QPalette::Window);
    for (const PageEntry& page : pages) {
        auto* item = new QStandardItem(icon(page.iconName), page.title);
        item->setSizeHint({kCompact, kRow});
        item->setToolTip(page.title);
        item->setData(page.title, Qt::AccessibleTextRole);
        m_model->appendRow(item);
        m_titles.append(page.title);
    }
    setModel(m_model);
}

void NavigationList::setCompact(bool isCompact) {
    if (isCompact == m_isCompact) {
        return;
    }
    m_isCompact = isCompact;
    setFixedWidth(isCompact ? kCompact : kWide);
    for (int row = 0; row < m_model->rowCount(); ++row) {
        m_model->item(row)->setText(isCompact ? QString() : m_titles.at(row));
    }
}

void NavigationList::setCurrentPage(int index) {
    setCurrentIndex(m_model->index(index, 0));
}

void NavigationList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    if (current.isValid()) {
        emit sig_pageChosen(current.row());
    }
}

void NavigationList::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        event->ignore(); // the window plays and stops with it
        return;
    }
    QListView::keyPressEvent(event);
}
