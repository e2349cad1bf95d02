#pragma once

#include "ui/pages/list_page.h"

class PlayController;
class PlayedStationsModel;

namespace BASS {
class PlayedStations;
}

/// The stations played, to play again.
class HistoryPage final : public ListPage {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HistoryPage)

  public:
    HistoryPage(BASS::PlayedStations& played, PlayController& play, QWidget* parent);

  private:
    void open(int row);
    void removeSelected();
    void copyAddress();

    BASS::PlayedStations& m_played;
    PlayController& m_play;
    PlayedStationsModel* m_model;
};
