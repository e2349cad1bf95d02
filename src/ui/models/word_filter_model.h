#pragma once

#include <QSortFilterProxyModel>
#include <QStringList>

/// Keeps the rows whose FilterRole holds every word of the filter, whatever the case and order.
class WordFilterModel final : public QSortFilterProxyModel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WordFilterModel)

  public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setWords(const QString& text);

  protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    QStringList m_words;
};
