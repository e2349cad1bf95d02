#include "stations/station.h"

#include <QUrl>

namespace BASS {

QString StationRecord::playUrl() const {
    if (!currentUrl.isEmpty())
        return currentUrl;
    return streams.isEmpty() ? QString() : streams.constFirst().url;
}

QString StationRecord::displayName() const {
    return name.isEmpty() ? playUrl() : name;
}

Station::Station(StationRecord fields, QObject* parent)
    : QObject(parent), m_record(std::move(fields)) {}

void Station::setRecord(StationRecord fields) {
    m_record = std::move(fields);
    emit sig_changed();
}

StationRecord stationFromAddress(const QString& address, const QString& name) {
    StationRecord record;
    record.name = name;
    record.currentUrl = address.trimmed();
    record.streams.append({record.currentUrl, 1});
    return record;
}

} // namespace BASS
