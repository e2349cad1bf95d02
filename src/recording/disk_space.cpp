#include "recording/disk_space.h"

#include "recording/c_recording.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

constexpr std::chrono::seconds kInterval{5};
constexpr qint64 kMegabyte = 1024 * 1024;
/// Where so much is to spare, it is looked at seldom: the system goes through all its mounts.
constexpr std::chrono::seconds kLongInterval{30};
constexpr qint64 kPlenty = 4096 * kMegabyte;

/// Free bytes where the folder is or will be; -1: the system does not say.
qint64 freeBytesAt(const QString& folder) {
    QDir dir(folder);
    while (!dir.exists() && !dir.isRoot())
        dir.setPath(QFileInfo(dir.absolutePath()).path());
    const QStorageInfo storage(dir.absolutePath());
    return storage.isValid() && storage.isReady() ? storage.bytesAvailable() : -1;
}

} // namespace

DiskSpace::DiskSpace(QString folder, qint64 limit) : m_folder(std::move(folder)), m_limit(limit) {}

std::optional<RecordingError> DiskSpace::check(std::chrono::milliseconds now) {
    const bool isPlenty = m_free >= 0 && m_free - m_limit >= kPlenty;
    if (m_checked && now - *m_checked < (isPlenty ? kLongInterval : kInterval))
        return std::nullopt;
    m_checked = now;
    m_free = freeBytesAt(m_folder);
    if (m_free < 0 || m_free >= m_limit)
        return std::nullopt;
    return RecordingError{
        RecordingErrorKind::CannotWrite,
        recordingErrorText(RecordingErrorKind::CannotWrite),
        QCoreApplication::translate("BASS::DiskSpace",
                                    "Only %1 MB are free in %2; recordings leave %3 MB.")
            .arg(QString::number(m_free / kMegabyte),
                 QDir::toNativeSeparators(m_folder),
                 QString::number(m_limit / kMegabyte))};
}

void DiskSpace::tell(RecordingProgress& progress) const {
    progress.freeBytes = m_free;
    if (m_free < 0 || progress.fileBytes <= 0 || progress.fileDuration.count() <= 0)
        return;
    const auto spare = static_cast<double>(std::max<qint64>(0, m_free - m_limit));
    progress.remaining = std::chrono::duration_cast<std::chrono::seconds>(
        progress.fileDuration * (spare / static_cast<double>(progress.fileBytes)));
}

} // namespace BASS
