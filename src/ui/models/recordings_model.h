#pragma once

#include "base/background_worker.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QVector>

/// A file in the recording folder. A plain value.
struct RecordingEntry {
    QString path;  ///< absolute
    QString name;  ///< without folder and ending
    QString group; ///< the folder below the recording folder: usually the station; may be empty
    qint64 bytes = 0;
    QDateTime modified;
};

/// The audio files below a folder, the newest first, at most `limit`. Reads the disk, any thread.
/// Links to folders are not followed.
QVector<RecordingEntry> scanRecordings(const QString& folder, int limit);

/// The recordings of this and earlier sessions as rows.
///
/// *Thread*: GUI; the folder is read on a thread of its own. *Owner*: the page.
class RecordingsModel final : public QAbstractListModel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingsModel)

  public:
    static constexpr int kMaxFiles = 20000;

    explicit RecordingsModel(QObject* parent = nullptr);
    ~RecordingsModel() override;

    /// Reads the folder (anew); sig_scanned follows. Requests while one is read are joined.
    void scan(const QString& folder);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] const RecordingEntry& entryAt(int row) const { return m_rows.at(row); }

  signals:
    void sig_scanned();

  private:
    void begin();
    void take(const QVector<RecordingEntry>& rows);

    QVector<RecordingEntry> m_rows;
    QString m_folder;
    bool m_isScanning = false;
    bool m_isAgainWanted = false;
    BackgroundWorker m_reader;
};
