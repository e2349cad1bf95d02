#pragma once

#include <QAbstractListModel>
#include <QTime>

#include <deque>

/// The lines that the engine and the controllers have said, the newest last, at most kMaxLines.
class LogModel final : public QAbstractListModel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LogModel)

  public:
    static constexpr int kMaxLines = 5000;

    using QAbstractListModel::QAbstractListModel;

    void append(const QTime& time, const QString& text, bool isError);
    void clear();
    /// "12:34:56 Error: text", as it is copied.
    [[nodiscard]] QString lineAt(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    struct Line {
        QTime time;
        QString text;
        bool isError;
    };
    std::deque<Line> m_lines;
};
