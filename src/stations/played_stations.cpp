#include "stations/played_stations.h"

#include "base/atomic_file.h"
#include "base/file_lock.h"
#include "base/log.h"

#include <QFile>
#include <QLockFile>

namespace BASS {

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
    const QByteArray bytes = file.readAll();
    file.close();
    const Result<QVector<StationRecord>> read = playedStationsFromJson(bytes);
    if (read) {
        m_stations = read.value();
        m_onDisk = m_stations;
        m_bytes = bytes;
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
    return indexIn(m_stations, station);
}

void PlayedStations::add(const StationRecord& station) {
    if (!station.playUrl().isEmpty()) {
        change({PlayedChange::Kind::Add, station});
    }
}

void PlayedStations::update(const StationRecord& station) {
    if (indexOf(station) >= 0) {
        change({PlayedChange::Kind::Update, station});
    }
}

void PlayedStations::remove(int index) {
    if (index >= 0 && index < m_stations.size()) {
        change({PlayedChange::Kind::Remove, m_stations.at(index)});
    }
}

void PlayedStations::change(const PlayedChange& change) {
    applyChange(m_stations, change);
    emit sig_changed();
    if (!m_maySave) {
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_unwritten.append(change);
    }
    m_writer.post([this] { write(); });
}

/// What other instances have made of the list.
QVector<StationRecord> PlayedStations::listOf(const QByteArray& foreign) const {
    const Result<QVector<StationRecord>> read = playedStationsFromJson(foreign);
    if (read) {
        return read.value();
    }
    const Result<QString> moved = setAside(m_path);
    qCWarning(lcStations) << "PlayedStations"
                          << "damaged path=" << m_path << read.error()
                          << (moved ? moved.value() : moved.error());
    return m_onDisk;
}

void PlayedStations::write() {
    QVector<PlayedChange> changes;
    {
        const std::lock_guard lock(m_mutex);
        changes = m_unwritten;
    }
    if (changes.isEmpty()) {
        return; // an earlier turn has taken them along
    }
    QLockFile fileLock(m_path + QStringLiteral(".lock"));
    if (!takeFileLock(fileLock)) {
        // without it the file can only be overwritten, or not be written at all: the next line says
        qCWarning(lcStations) << "PlayedStations"
                              << "no lock path=" << m_path;
    }
    QFile file(m_path);
    const bool isThere = file.open(QIODevice::ReadOnly);
    const QByteArray found = isThere ? file.readAll() : QByteArray();
    file.close();
    const bool isForeign = isThere && found != m_bytes;
    QVector<StationRecord> merged = isForeign ? listOf(found) : m_onDisk;
    for (const PlayedChange& change : qAsConst(changes)) {
        applyChange(merged, change);
    }
    const QByteArray bytes = playedStationsToJson(merged);
    const Status written = replaceFile(m_path, bytes);
    if (!written) {
        qCWarning(lcStations) << "PlayedStations"
                              << "path=" << m_path << written.error();
        const QString text =
            tr("The list of played stations could not be saved: %1").arg(written.error());
        // The end of the list waits for this function; a call still queued then is dropped.
        QMetaObject::invokeMethod(
            this, [this, text] { emit sig_saveFailed(text); }, Qt::QueuedConnection);
        return; // the changes wait for the next try
    }
    m_bytes = bytes;
    {
        const std::lock_guard lock(m_mutex);
        m_onDisk = merged;
        m_unwritten.remove(0, changes.size());
    }
    if (isForeign) {
        QMetaObject::invokeMethod(this, &PlayedStations::adopt, Qt::QueuedConnection);
    }
}

/// The list as it is in the file by now, with what is still on its way there.
void PlayedStations::adopt() {
    {
        const std::lock_guard lock(m_mutex);
        m_stations = m_onDisk;
        for (const PlayedChange& change : qAsConst(m_unwritten)) {
            applyChange(m_stations, change);
        }
    }
    emit sig_changed();
}

} // namespace BASS
