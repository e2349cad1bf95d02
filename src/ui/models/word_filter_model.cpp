#include "ui/models/word_filter_model.h"

#include "ui/models/list_roles.h"

#include <algorithm>

void WordFilterModel::setWords(const QString& text) {
    m_words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    invalidateFilter();
}

bool WordFilterModel::filterAcceptsRow(int row, const QModelIndex& parent) const {
    if (m_words.isEmpty()) {
        return true;
    }
    const QString text = sourceModel()->index(row, 0, parent).data(FilterRole).toString();
    return std::all_of(m_words.cbegin(), m_words.cend(), [&text](const QString& word) {
        return text.contains(word, Qt::CaseInsensitive);
    });
}
