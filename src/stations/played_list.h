#pragma once

#include "base/result.h"
#include "stations/station.h"

#include <QByteArray>
#include <QVector>

namespace BASS {

constexpr int kMaxPlayedStations = 500;

/// What was done to the list of stations played; other running instances do the like.
struct PlayedChange {
    enum class Kind {
        Add,    ///< puts the station in front; an entry of the same station is replaced
        Update, ///< replaces what is known of a listed station, without moving it
        Remove,
    };
    Kind kind;
    StationRecord station;
};

/// The place of the station with the same id or, where one of them has none, the same address;
/// -1: none. Pure.
int indexIn(const QVector<StationRecord>& stations, const StationRecord& station);
/// Pure.
void applyChange(QVector<StationRecord>& stations, const PlayedChange& change);

/// The file's form. The array is bounded by kMaxPlayedStations, entries without an address are left
/// out.
QByteArray playedStationsToJson(const QVector<StationRecord>& stations);
Result<QVector<StationRecord>> playedStationsFromJson(const QByteArray& json);

} // namespace BASS
