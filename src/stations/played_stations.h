#pragma once

#include "base/background_worker.h"
#include "base/result.h"
#include "stations/played_list.h"

#include <QObject>
#include <QVector>

#include <mutex>

namespace BASS {

/// The stations played, the most recent first, kept in a JSON file that running instances share:
/// each puts its own changes into what it finds there.
///
/// *Thread*: lives on the thread that made it; the file is written on a thread of its own, so that
/// a slow disk holds nobody up. *Owner*: main(). *Life*: load() once, then anything. Destroying it
/// waits for the last write.
class PlayedStations final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PlayedStations)

  public:
    explicit PlayedStations(QString path, QObject* parent = nullptr);
    ~PlayedStations() override;

    /// Reads the file; a missing one is an empty list. A damaged one is set aside and the text of
    /// the error says where it is now. A file that can neither be read nor moved is never written.
    [[nodiscard]] Status load();

    [[nodiscard]] const QVector<StationRecord>& stations() const { return m_stations; }
    /// As indexIn().
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
    void change(const PlayedChange& change);
    void write(); // writer thread
    /// Writer thread.
    [[nodiscard]] QVector<StationRecord> listOf(const QByteArray& foreign) const;
    void adopt();

    const QString m_path;
    QVector<StationRecord> m_stations;
    bool m_maySave = true;

    std::mutex m_mutex; ///< guards what follows
    QVector<PlayedChange> m_unwritten;
    QVector<StationRecord> m_onDisk; ///< changed by the writer alone, once there is one

    QByteArray m_bytes; ///< the writer's: of the file as this instance knows it
    BackgroundWorker m_writer;
};

} // namespace BASS
