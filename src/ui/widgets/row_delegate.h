#pragma once

#include <QStyledItemDelegate>

/// Draws the rows of the program's lists: first line, a quiet second line where the model has one,
/// a trailing text at the far end. Texts are shortened to the width; errors take the error colour.
class RowDelegate final : public QStyledItemDelegate {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RowDelegate)

  public:
    enum class Lines { One, Two };

    explicit RowDelegate(Lines lines, QObject* parent = nullptr);

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

  private:
    Lines m_lines;
};
