#pragma once

#include "stations/rec_info.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

namespace BASS {

/// One address of a station; the index gives its place in the play order.
struct StationStream {
    QString url;
    int index = 0;
};

/// What is kept of a station: a plain value. Texts are empty when unknown.
struct StationRecord {
    QString name;
    QString stationId;
    QVector<StationStream> streams;
    QString currentUrl; ///< last used; empty: the first stream
    QString format;     ///< declared format ("MP3", "FLAC", ...), empty: not declared
    QString genre;
    QString tags;
    QString country;
    QString countryState;
    bool isCountryOnly = false;
    QString city;
    QString language;
    QString website;
    QString comment;
    int bitrate = 0; ///< kbit/s; 0: unknown
    QDateTime lastPlayed;
    QString dateUpdated;
    QString image;
    unsigned splitDelayMs = 0;
    RecInfo recInfo; ///< its own recording options

    /// The address to try first.
    [[nodiscard]] QString playUrl() const;
    /// The name, or the address where there is none.
    [[nodiscard]] QString displayName() const;
};

/// A playable source: station, podcast, episode or local file.
/// Thread: GUI; the engine works on copies of the record. Owner: shared by the lists that hold it.
class Station final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Station)

  public:
    explicit Station(StationRecord fields, QObject* parent = nullptr);

    [[nodiscard]] const StationRecord& record() const { return m_record; }
    void setRecord(StationRecord fields);

  signals:
    void sig_changed();

  private:
    StationRecord m_record;
};

/// A station known by its address alone, or by name and address.
StationRecord stationFromAddress(const QString& address, const QString& name = {});

} // namespace BASS

Q_DECLARE_METATYPE(BASS::StationRecord)
