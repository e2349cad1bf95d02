#include "ui/models/played_stations_model.h"

#include "stations/played_stations.h"
#include "ui/models/list_roles.h"
#include "ui/widgets/tool_tip.h"

#include <QLocale>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace {

using Rows = QVector<BASS::StationRecord>;

QString key(const BASS::StationRecord& station) {
    return station.stationId + QLatin1Char('\n') + station.playUrl();
}

int find(const Rows& rows, const QString& wanted) {
    const auto found = std::find_if(
        rows.cbegin(), rows.cend(), [&wanted](const auto& row) { return key(row) == wanted; });
    return found == rows.cend() ? -1 : static_cast<int>(found - rows.cbegin());
}

/// The address without user name and password, which nobody else needs to see.
QString shownAddress(const BASS::StationRecord& station) {
    const QUrl url(station.playUrl());
    return url.userInfo().isEmpty() ? station.playUrl() : url.toDisplayString(QUrl::RemoveUserInfo);
}

QString secondLine(const BASS::StationRecord& station) {
    QStringList parts;
    if (!station.genre.isEmpty()) {
        parts.append(station.genre);
    }
    if (station.bitrate > 0) {
        parts.append(PlayedStationsModel::tr("%1 kbit/s").arg(station.bitrate));
    }
    parts.append(shownAddress(station));
    return parts.join(QStringLiteral(" · "));
}

QString firstLine(const BASS::StationRecord& station) {
    return station.name.isEmpty() ? shownAddress(station) : station.name;
}

QString playedText(const QDateTime& when) {
    if (!when.isValid()) {
        return {};
    }
    const QDateTime local = when.toLocalTime();
    const bool isToday = local.date() == QDate::currentDate();
    return isToday ? QLocale().toString(local.time(), QLocale::ShortFormat)
                   : QLocale().toString(local.date(), QLocale::ShortFormat);
}

} // namespace

PlayedStationsModel::PlayedStationsModel(const BASS::PlayedStations& played, QObject* parent)
    : QAbstractListModel(parent), m_played(played), m_rows(played.stations()) {
    connect(&played, &BASS::PlayedStations::sig_changed, this, &PlayedStationsModel::follow);
}

int PlayedStationsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows.size();
}

QVariant PlayedStationsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_rows.size()) {
        return {};
    }
    const BASS::StationRecord& station = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return firstLine(station);
    case SecondLineRole:
        return secondLine(station);
    case TrailingRole:
        return playedText(station.lastPlayed);
    case FilterRole:
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, %2").arg(firstLine(station), secondLine(station));
    case Qt::ToolTipRole:
        return plainToolTip(shownAddress(station));
    default:
        return {};
    }
}

void PlayedStationsModel::follow() {
    const Rows& now = m_played.stations();
    for (int row = m_rows.size() - 1; row >= 0; --row) {
        if (find(now, key(m_rows.at(row))) < 0) {
            beginRemoveRows({}, row, row);
            m_rows.remove(row);
            endRemoveRows();
        }
    }
    if (!now.isEmpty() && (m_rows.isEmpty() || key(m_rows.front()) != key(now.front()))) {
        const int old = find(m_rows, key(now.front()));
        if (old > 0) {
            beginMoveRows({}, old, old, {}, 0);
            m_rows.move(old, 0);
            endMoveRows();
        } else {
            beginInsertRows({}, 0, 0);
            m_rows.prepend(now.front());
            endInsertRows();
        }
    }
    const bool isSameOrder = std::equal(
        now.cbegin(), now.cend(), m_rows.cbegin(), m_rows.cend(), [](const auto& a, const auto& b) {
            return key(a) == key(b);
        });
    if (!isSameOrder) { // loaded anew
        beginResetModel();
        m_rows = now;
        endResetModel();
    } else if (!now.isEmpty()) {
        m_rows = now;
        emit dataChanged(index(0), index(m_rows.size() - 1));
    }
}
