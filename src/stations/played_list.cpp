#include "stations/played_list.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace BASS {

namespace {

struct TextField {
    const char* key;
    QString StationRecord::*field;
};

constexpr TextField kTextFields[] = {
    {"name", &StationRecord::name},
    {"station_id", &StationRecord::stationId},
    {"current_url", &StationRecord::currentUrl},
    {"format", &StationRecord::format},
    {"genre", &StationRecord::genre},
    {"tags", &StationRecord::tags},
    {"country", &StationRecord::country},
    {"state", &StationRecord::countryState},
    {"city", &StationRecord::city},
    {"language", &StationRecord::language},
    {"website", &StationRecord::website},
    {"comment", &StationRecord::comment},
    {"image", &StationRecord::image},
};

QJsonObject toObject(const StationRecord& station) {
    QJsonObject object;
    for (const TextField& text : kTextFields) {
        const QString& value = station.*text.field;
        if (!value.isEmpty()) {
            object.insert(QLatin1String(text.key), value);
        }
    }
    QJsonArray streams;
    for (const StationStream& stream : station.streams) {
        streams.append(stream.url);
    }
    object.insert(QLatin1String("streams"), streams);
    object.insert(QLatin1String("bitrate"), station.bitrate);
    object.insert(QLatin1String("split_delay_ms"), static_cast<double>(station.splitDelayMs));
    if (station.lastPlayed.isValid()) {
        object.insert(QLatin1String("last_played"),
                      station.lastPlayed.toUTC().toString(Qt::ISODateWithMs));
    }
    return object;
}

StationRecord fromObject(const QJsonObject& object) {
    StationRecord station;
    for (const TextField& text : kTextFields) {
        station.*text.field = object.value(QLatin1String(text.key)).toString();
    }
    const QJsonArray streams = object.value(QLatin1String("streams")).toArray();
    for (const QJsonValue& url : streams) {
        if (!url.toString().isEmpty()) {
            station.streams.append({url.toString(), station.streams.size() + 1});
        }
    }
    station.bitrate = object.value(QLatin1String("bitrate")).toInt();
    const int delay = object.value(QLatin1String("split_delay_ms")).toInt();
    station.splitDelayMs = static_cast<unsigned>(std::max(0, delay));
    station.lastPlayed = QDateTime::fromString(
        object.value(QLatin1String("last_played")).toString(), Qt::ISODateWithMs);
    return station;
}

bool isSame(const StationRecord& a, const StationRecord& b) {
    if (!a.stationId.isEmpty() && !b.stationId.isEmpty()) {
        return a.stationId == b.stationId;
    }
    return a.playUrl() == b.playUrl();
}

} // namespace

QByteArray playedStationsToJson(const QVector<StationRecord>& stations) {
    QJsonArray array;
    for (const StationRecord& station : stations) {
        if (array.size() < kMaxPlayedStations && !station.playUrl().isEmpty()) {
            array.append(toObject(station));
        }
    }
    const QJsonObject root{{QStringLiteral("version"), 1}, {QStringLiteral("stations"), array}};
    return QJsonDocument(root).toJson();
}

Result<QVector<StationRecord>> playedStationsFromJson(const QByteArray& json) {
    QJsonParseError fault;
    const QJsonDocument document = QJsonDocument::fromJson(json, &fault);
    if (fault.error != QJsonParseError::NoError) {
        return Error{fault.errorString()};
    }
    const QJsonValue list = document.object().value(QLatin1String("stations"));
    if (!list.isArray()) {
        return Error{QStringLiteral("it holds no list of stations")};
    }
    QVector<StationRecord> stations;
    const QJsonArray array = list.toArray();
    for (const QJsonValue& value : array) {
        const StationRecord station = fromObject(value.toObject());
        if (!station.playUrl().isEmpty() && stations.size() < kMaxPlayedStations) {
            stations.append(station);
        }
    }
    return stations;
}

int indexIn(const QVector<StationRecord>& stations, const StationRecord& station) {
    const auto found =
        std::find_if(stations.cbegin(), stations.cend(), [&station](const StationRecord& other) {
            return isSame(station, other);
        });
    return found == stations.cend() ? -1 : static_cast<int>(found - stations.cbegin());
}

void applyChange(QVector<StationRecord>& stations, const PlayedChange& change) {
    const int index = indexIn(stations, change.station);
    switch (change.kind) {
    case PlayedChange::Kind::Add:
        if (index >= 0) {
            stations.remove(index);
        }
        stations.prepend(change.station);
        if (stations.size() > kMaxPlayedStations) {
            stations.resize(kMaxPlayedStations);
        }
        break;
    case PlayedChange::Kind::Update:
        if (index >= 0) {
            const QDateTime played = stations.at(index).lastPlayed;
            stations[index] = change.station;
            stations[index].lastPlayed = played;
        }
        break;
    case PlayedChange::Kind::Remove:
        if (index >= 0) {
            stations.remove(index);
        }
        break;
    }
}

} // namespace BASS
