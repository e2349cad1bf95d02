#include "ui/pages/history_page.h"

#include "stations/played_stations.h"
#include "ui/controllers/play_controller.h"
#include "ui/models/played_stations_model.h"
#include "ui/widgets/row_list_view.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>

namespace {

ListPage::Texts texts() {
    return {HistoryPage::tr("Stations played"),
            HistoryPage::tr("Filter the stations"),
            HistoryPage::tr("Stations played"),
            HistoryPage::tr("Stations that you play appear here.\n\nPaste the address of a station "
                            "above and press Enter."),
            HistoryPage::tr("No station has all these words.")};
}

} // namespace

HistoryPage::HistoryPage(BASS::PlayedStations& played, PlayController& play, QWidget* parent)
    : ListPage(texts(), RowDelegate::Lines::Two, parent), m_played(played), m_play(play),
      m_model(new PlayedStationsModel(played, this)) {
    setModel(m_model);
    QAction* open = makeAction(tr("Play"), QStringLiteral("play"), {});
    QAction* copy = makeAction(tr("Copy the address"), QStringLiteral("copy"), QKeySequence::Copy);
    QAction* remove =
        makeAction(tr("Remove from the list"), QStringLiteral("remove"), QKeySequence::Delete);
    connect(open, &QAction::triggered, this, [this] { this->open(currentRow()); });
    connect(copy, &QAction::triggered, this, &HistoryPage::copyAddress);
    connect(remove, &QAction::triggered, this, &HistoryPage::removeSelected);
    connect(view(), &RowListView::sig_opened, this, [this](const QModelIndex& index) {
        this->open(rowOf(index));
    });
    connect(view(), &RowListView::sig_removeRequested, this, &HistoryPage::removeSelected);
    connect(view(), &RowListView::sig_copyRequested, this, &HistoryPage::copyAddress);
}

void HistoryPage::open(int row) {
    if (row >= 0) {
        m_play.requestPlay(m_model->stationAt(row));
    }
}

void HistoryPage::removeSelected() {
    const int row = currentRow();
    if (row >= 0) {
        m_played.remove(m_played.indexOf(m_model->stationAt(row)));
    }
}

void HistoryPage::copyAddress() {
    const int row = currentRow();
    if (row >= 0) {
        QGuiApplication::clipboard()->setText(m_model->stationAt(row).playUrl());
    }
}
