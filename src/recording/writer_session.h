#pragma once

#include "recording/recording_types.h"

namespace BASS {

/// What the writer thread does with any session, whatever its bytes come from.
///
/// *Thread*: the writer thread; blocks on disk. *Life*: until isOver(); then everything is ignored.
class WriterSession {
  public:
    virtual ~WriterSession() = default;

    /// Hands what came so far to the system; called when no more is waiting.
    virtual void flush() = 0;
    /// Waits for the disk; called once a second.
    virtual void sync() = 0;
    /// No more is wanted; it is over now, or when what is on its way has come.
    virtual void finish() = 0;
    /// Completes the files with what is there.
    virtual void close() = 0;
    /// Ends with an error that came from outside.
    virtual void fail(const RecordingError& error) = 0;

    [[nodiscard]] virtual bool isOver() const = 0;
    [[nodiscard]] virtual RecordingProgress progress() const = 0;
};

} // namespace BASS
