#pragma once

#include "ui/pages/page_registry.h"

#include <QListView>

class QStandardItemModel;

/// The list of pages at the left side; icons alone where the window is narrow.
class NavigationList final : public QListView {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NavigationList)

  public:
    explicit NavigationList(const PageRegistry& pages, QWidget* parent = nullptr);

    void setCompact(bool isCompact);
    void setCurrentPage(int index);

  signals:
    void sig_pageChosen(int index);

  protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QStandardItemModel* m_model;
    QStringList m_titles;
    bool m_isCompact = false;
};
