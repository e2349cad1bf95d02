#pragma once

#include <QtCore/qnamespace.h>

/// What the rows of the program's lists offer beside their first line (Qt::DisplayRole).
enum ListRole : int {
    SecondLineRole = Qt::UserRole + 1, ///< QString
    TrailingRole,                      ///< QString at the right end: a date, a size
    FilterRole,                        ///< QString that the filter line looks through
    ErrorRole,                         ///< bool: the row tells of an error
};
