#pragma once

#include "base/background_worker.h"
#include "base/result.h"
#include "stations/station.h"

#include <QObject>
#include <QVector>

namespace BASS {

/// The stations played, the most recent first, kept in a JSON file.
///
/// *Thread*: lives on the thread that made it; the file is written on a thread of its own, so that
/// a slow disk holds nobody up. *Owner*: main(). *Life*: load() once, then anything. Destroying it
/// waits for the last write.
class PlayedStations final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PlayedStations)

  public:
    static constexpr int kMaxStations = 500;

    explicit PlayedStations(QString path, QObject* parent = nullptr);
    ~PlayedStations() override;

    /// Reads the file; a missing one is an empty list. A damaged one is set aside and the text of
    /// the error says where it is now. A file that can neither be read nor moved is never written.
    [[nodiscard]] Status load();

    [[nodiscard]] const QVector<StationRecord>& stations() const { return m_stations; }
    /// The place of the station with the same id or, where one of them has none, the same address;
    /// -1: none.
    [[nodiscard]] int indexOf(const StationRecord& station) const;

    /// Puts the station in front; an entry of the same station is replaced.
    void add(const StationRecord& station);
    /// Replaces what is known of a station that is in the list, without moving it.
    void update(const StationRecord& station);
    void remove(int index);

  signals:
    void sig_changed();
    /// The list could not be written; it stays complete in memory.
    void sig_saveFailed(const QString& message);

  private:
    void changed();

    QString m_path;
    QVector<StationRecord> m_stations;
    bool m_maySave = true;
    BackgroundWorker m_writer;
};

/// The file's form. The array is bounded by kMaxStations, entries without an address are left out.
QByteArray playedStationsToJson(const QVector<StationRecord>& stations);
Result<QVector<StationRecord>> playedStationsFromJson(const QByteArray& json);

} // namespace BASS
