#include "ui/pages/list_page.h"

#include "ui/models/word_filter_model.h"
#include "ui/theme/icons.h"
#include "ui/widgets/row_list_view.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

ListPage::ListPage(const Texts& texts, RowDelegate::Lines lines, QWidget* parent)
    : Page(parent), m_texts(texts), m_filtered(new WordFilterModel(this)),
      m_filter(new QLineEdit(this)), m_view(new RowListView(this)), m_top(new QHBoxLayout) {
    m_filter->setObjectName(QStringLiteral("filterField"));
    m_filter->setPlaceholderText(texts.filterHint);
    m_filter->setAccessibleName(texts.filterHint);
    m_filter->setClearButtonEnabled(true);
    m_filter->addAction(icon(QStringLiteral("search"), IconTone::Quiet),
                        QLineEdit::LeadingPosition);
    m_view->setObjectName(QStringLiteral("pageList"));
    m_view->setAccessibleName(texts.listName);
    m_view->setItemDelegate(new RowDelegate(lines, m_view));
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);

    m_top->setContentsMargins(12, 8, 12, 8);
    m_top->setSpacing(6);
    m_top->addWidget(m_filter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(m_top);
    layout->addWidget(m_view);

    connect(m_filter, &QLineEdit::textChanged, this, &ListPage::filterChanged);
    connect(m_filter, &QLineEdit::returnPressed, this, &ListPage::focusContent);
    connect(m_view, &QWidget::customContextMenuRequested, this, &ListPage::showMenu);
}

void ListPage::setModel(QAbstractItemModel* model) {
    m_filtered->setSourceModel(model);
    m_view->setModel(m_filtered);
    updateEmptyText();
    connect(m_filtered, &QAbstractItemModel::modelReset, this, &ListPage::rowsArrived);
    connect(m_filtered, &QAbstractItemModel::rowsInserted, this, &ListPage::rowsArrived);
}

// A list that had the keyboard while it was empty gets a row to act on.
void ListPage::rowsArrived() {
    if (m_view->hasFocus()) {
        focusContent();
    }
}

void ListPage::focusFilter() {
    m_filter->setFocus(Qt::ShortcutFocusReason);
    m_filter->selectAll();
}

void ListPage::focusContent() {
    m_view->setFocus(Qt::ShortcutFocusReason);
    if (!m_view->currentIndex().isValid() && m_filtered->rowCount() > 0) {
        m_view->setCurrentIndex(m_filtered->index(0, 0));
    }
}

int ListPage::rowOf(const QModelIndex& shown) const {
    return m_filtered->mapToSource(shown).row();
}

int ListPage::currentRow() const {
    return m_view->currentIndex().isValid() ? rowOf(m_view->currentIndex()) : -1;
}

QList<int> ListPage::selectedRows() const {
    QList<int> rows;
    const QModelIndexList shown = m_view->selectionModel()->selectedIndexes();
    for (const QModelIndex& index : shown) {
        rows.append(rowOf(index));
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

QAction*
ListPage::makeAction(const QString& text, const QString& iconName, const QKeySequence& keys) {
    auto* action = new QAction(text, this);
    if (!iconName.isEmpty()) {
        action->setIcon(icon(iconName));
    }
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    m_view->addAction(action);
    return action;
}

void ListPage::addPageAction(QAction* action) {
    auto* button = new QToolButton(this);
    button->setDefaultAction(action);
    button->setAccessibleName(action->text());
    button->setToolTip(action->text());
    button->setFocusPolicy(Qt::StrongFocus);
    button->setFixedSize(32, 32);
    m_top->addWidget(button);
}

void ListPage::filterChanged(const QString& text) {
    m_filtered->setWords(text);
    updateEmptyText();
}

void ListPage::updateEmptyText() {
    const bool isFiltered = !m_filter->text().trimmed().isEmpty();
    m_view->setEmptyText(isFiltered ? m_texts.nothingFits : m_texts.empty);
}

void ListPage::showMenu(const QPoint& place) {
    const QList<QAction*> actions = m_view->actions();
    if (!m_view->indexAt(place).isValid() || actions.isEmpty()) {
        return;
    }
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(actions);
    menu->popup(m_view->viewport()->mapToGlobal(place));
}
