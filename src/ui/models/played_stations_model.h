#pragma once

#include "stations/station.h"

#include <QAbstractListModel>
#include <QVector>

namespace BASS {
class PlayedStations;
}

/// The played stations as rows, the most recent first. Follows the list; selections stay on their
/// station when another one moves to the front.
class PlayedStationsModel final : public QAbstractListModel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PlayedStationsModel)

  public:
    explicit PlayedStationsModel(const BASS::PlayedStations& played, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] const BASS::StationRecord& stationAt(int row) const { return m_rows.at(row); }

  private:
    void follow();

    const BASS::PlayedStations& m_played;
    QVector<BASS::StationRecord> m_rows;
};
