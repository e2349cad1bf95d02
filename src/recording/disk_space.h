#pragma once

#include "recording/recording_types.h"

#include <chrono>
#include <optional>

namespace BASS {

/// Watches the disk of a recording: it is left before its last byte is gone, since other programs
/// need it, too. *Thread*: one; asks the system every few seconds, where plenty is free every half
/// minute.
class DiskSpace final {
  public:
    /// `folder`: may still be missing. `limit`: bytes to be left.
    DiskSpace(QString folder, qint64 limit);

    /// Why the recording must end; `now`: steady time.
    std::optional<RecordingError> check(std::chrono::milliseconds now);
    /// Adds what is known to the progress of the file being written.
    void tell(RecordingProgress& progress) const;

  private:
    QString m_folder;
    qint64 m_limit;
    qint64 m_free = -1; ///< -1: not known
    std::optional<std::chrono::milliseconds> m_checked;
};

} // namespace BASS
