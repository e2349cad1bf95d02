#include "stations/played_stations.h"

#include "base/atomic_file.h"
#include "base/log.h"

#include <QFile>
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
        if (array.size() < PlayedStations::kMaxStations && !station.playUrl().isEmpty()) {
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
        if (!station.playUrl().isEmpty() && stations.size() < PlayedStations::kMaxStations) {
            stations.append(station);
        }
    }
    return stations;
}

PlayedStations::PlayedStations(QString path, QObject* parent)
    : QObject(parent), m_path(std::move(path)) {}

PlayedStations::~PlayedStations() = default;

Status PlayedStations::load() {
    QFile file(m_path);
    if (!file.exists()) {
        return Done{};
    }
    if (!file.open(QIODevice::ReadOnly)) {
        m_maySave = false;
        return Error{tr("The list of played stations cannot be read (%1: %2). It stays as it is, "
                        "and stations played now are not added to it.")
                         .arg(m_path, file.errorString())};
    }
    const Result<QVector<StationRecord>> read = playedStationsFromJson(file.readAll());
    file.close();
    if (read) {
        m_stations = read.value();
        emit sig_changed();
        return Done{};
    }
    const Result<QString> moved = setAside(m_path);
    if (!moved) {
        m_maySave = false;
        return Error{tr("The list of played stations is damaged (%1) and cannot be moved away: %2")
                         .arg(read.error(), moved.error())};
    }
    return Error{tr("The list of played stations is damaged (%1). It was kept as %2, and a new "
                    "list was begun.")
                     .arg(read.error(), moved.value())};
}

int PlayedStations::indexOf(const StationRecord& station) const {
    const auto found =
        std::find_if(m_stations.cbegin(),
                     m_stations.cend(),
                     [&station](const StationRecord& other) { return isSame(station, other); });
    return found == m_stations.cend() ? -1 : static_cast<int>(found - m_stations.cbegin());
}

void PlayedStations::add(const StationRecord& station) {
    if (station.playUrl().isEmpty()) {
        return;
    }
    const int old = indexOf(station);
    if (old >= 0) {
        m_stations.remove(old);
    }
    m_stations.prepend(station);
    if (m_stations.size() > kMaxStations) {
        m_stations.resize(kMaxStations);
    }
    changed();
}

void PlayedStations::update(const StationRecord& station) {
    const int index = indexOf(station);
    if (index >= 0) {
        const QDateTime played = m_stations.at(index).lastPlayed;
        m_stations[index] = station;
        m_stations[index].lastPlayed = played;
        changed();
    }
}

void PlayedStations::remove(int index) {
    if (index >= 0 && index < m_stations.size()) {
        m_stations.remove(index);
        changed();
    }
}

void PlayedStations::changed() {
    emit sig_changed();
    if (!m_maySave) {
        return;
    }
    m_writer.post([this, path = m_path, json = playedStationsToJson(m_stations)] {
        const Status written = replaceFile(path, json);
        if (!written) {
            qCWarning(lcStations) << "PlayedStations"
                                  << "path=" << path << written.error();
            const QString text =
                tr("The list of played stations could not be saved: %1").arg(written.error());
            // The end of the list waits for this function; a call still queued then is dropped.
            QMetaObject::invokeMethod(
                this, [this, text] { emit sig_saveFailed(text); }, Qt::QueuedConnection);
        }
    });
}

} // namespace BASS
