#include "ui/widgets/navigation_list.h"

#include "ui/theme/icons.h"

#include <QKeyEvent>
#include <QStandardItemModel>

namespace {

constexpr int kWide = 190;
constexpr int kCompact = 52;
constexpr int kRow = 40;

} // namespace

NavigationList::NavigationList(const PageRegistry& pages, QWidget* parent)
    : QListView(parent), m_model(new QStandardItemModel(this)) {
    setObjectName(QStringLiteral("navigation"));
    setAccessibleName(tr("Pages"));
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setIconSize({20, 20});
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
