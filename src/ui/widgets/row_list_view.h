#pragma once

#include <QListView>

/// The list of a page. Enter opens the current row, Delete asks to remove, Space is left to the
/// window, and an empty list shows what to do instead.
class RowListView final : public QListView {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RowListView)

  public:
    explicit RowListView(QWidget* parent = nullptr);

    void setEmptyText(const QString& text);

  signals:
    void sig_opened(const QModelIndex& index);
    void sig_removeRequested();
    void sig_copyRequested();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString m_emptyText;
};
