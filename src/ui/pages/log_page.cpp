#include "ui/pages/log_page.h"

#include "ui/models/log_model.h"
#include "ui/widgets/row_list_view.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>

namespace {

ListPage::Texts texts() {
    return {LogPage::tr("Log"),
            LogPage::tr("Filter the log"),
            LogPage::tr("Log"),
            LogPage::tr("Nothing has happened yet."),
            LogPage::tr("No line of the log has all these words.")};
}

} // namespace

LogPage::LogPage(LogModel& log, QWidget* parent)
    : ListPage(texts(), RowDelegate::Lines::One, parent), m_log(log) {
    setModel(&log);
    view()->setSelectionMode(QAbstractItemView::ExtendedSelection);
    QAction* copy = makeAction(tr("Copy the selected lines"), {}, {});
    QAction* all = makeAction(tr("Copy the whole log"), QStringLiteral("copy"), {});
    QAction* clear = makeAction(tr("Clear the log"), QStringLiteral("remove"), {});
    addPageAction(all);
    addPageAction(clear);
    connect(copy, &QAction::triggered, this, &LogPage::copySelected);
    connect(view(), &RowListView::sig_copyRequested, this, &LogPage::copySelected);
    connect(all, &QAction::triggered, this, &LogPage::copyAll);
    connect(clear, &QAction::triggered, &log, &LogModel::clear);

    // The view is asked before the row is there, and scrolled when it has been laid out.
    QScrollBar* bar = view()->verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, [bar, last = 0](int, int maximum) mutable {
        if (bar->value() >= last) {
            bar->setValue(maximum);
        }
        last = maximum;
    });
}

void LogPage::copySelected() {
    QStringList lines;
    const QList<int> rows = selectedRows();
    for (int row : rows) {
        lines.append(m_log.lineAt(row));
    }
    if (!lines.isEmpty()) {
        QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
    }
}

void LogPage::copyAll() {
    QStringList lines;
    for (int row = 0; row < m_log.rowCount(); ++row) {
        lines.append(m_log.lineAt(row));
    }
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}
