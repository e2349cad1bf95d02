#include "ui/models/log_model.h"

#include "ui/models/list_roles.h"
#include "ui/widgets/tool_tip.h"

void LogModel::append(const QTime& time, const QString& text, bool isError) {
    if (text.isEmpty()) {
        return;
    }
    const int count = rowCount();
    if (count >= kMaxLines) {
        beginRemoveRows({}, 0, 0);
        m_lines.pop_front();
        endRemoveRows();
    }
    beginInsertRows({}, rowCount(), rowCount());
    m_lines.push_back({time, text.simplified(), isError});
    endInsertRows();
}

void LogModel::clear() {
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

QString LogModel::lineAt(int row) const {
    const Line& line = m_lines.at(static_cast<std::size_t>(row));
    const QString stamp = line.time.toString(QStringLiteral("HH:mm:ss"));
    return line.isError ? tr("%1 Error: %2").arg(stamp, line.text)
                        : QStringLiteral("%1 %2").arg(stamp, line.text);
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const Line& line = m_lines.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole:
        return line.text;
    case TrailingRole:
        return line.time.toString(QStringLiteral("HH:mm:ss"));
    case ErrorRole:
        return line.isError;
    case Qt::ToolTipRole:
        return plainToolTip(line.text);
    case FilterRole:
    case Qt::AccessibleTextRole:
        return lineAt(index.row());
    default:
        return {};
    }
}
