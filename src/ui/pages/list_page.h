#pragma once

#include "ui/pages/page.h"
#include "ui/widgets/row_delegate.h"

#include <QAbstractItemModel>
#include <QList>

class QAction;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class RowListView;
class WordFilterModel;

/// A page of one list with a filter line above it that answers at every keystroke.
class ListPage : public Page {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ListPage)

  public:
    struct Texts {
        QString title;
        QString filterHint;
        QString listName;    ///< for screen readers
        QString empty;       ///< what to do where there is nothing yet
        QString nothingFits; ///< where the filter leaves nothing
    };

    ListPage(const Texts& texts, RowDelegate::Lines lines, QWidget* parent);

    void focusFilter() override;
    void focusContent() override;

  protected:
    /// The model is not owned.
    void setModel(QAbstractItemModel* model);
    [[nodiscard]] RowListView* view() const { return m_view; }
    /// Rows of the given model.
    [[nodiscard]] int currentRow() const;
    [[nodiscard]] QList<int> selectedRows() const;
    [[nodiscard]] int rowOf(const QModelIndex& shown) const;
    /// Adds it to the list's context menu, and as a button beside the filter line where it has an
    /// icon.
    void addPageAction(QAction* action);
    /// Makes an action with text; its shortcut, if any, works while the list has the focus.
    QAction* makeAction(const QString& text, const QString& iconName, const QKeySequence& keys);

  private:
    void filterChanged(const QString& text);
    void rowsArrived();
    void updateEmptyText();
    void showMenu(const QPoint& place);

    Texts m_texts;
    WordFilterModel* m_filtered;
    QLineEdit* m_filter;
    RowListView* m_view;
    QHBoxLayout* m_top;
};
