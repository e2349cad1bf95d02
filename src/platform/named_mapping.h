#pragma once

#include "base/result.h"

#include <QString>
#include <QtGlobal>

/// A block of memory under a name, all zero, backed by the system's paging file, not by a file of
/// the user: the recording buffer. It goes with the object, after a crash as well.
/// Windows: a page file mapping (CreateFileMapping), whose name only one holder at a time may make.
/// Linux: a memory file (memfd_create(2)); its name is for looking at, two of the same do not meet.
/// Thread: any, one at a time; the bytes themselves are not guarded. Owner: a move-only value.
class NamedMapping {
  public:
    /// `name` is used as it stands ("map_1"), up to 200 characters, none of them "\" or "/".
    /// `bytes` is at least 1. The error says which step failed and what the system says of it.
    static Result<NamedMapping> create(const QString& name, qint64 bytes);

    ~NamedMapping();
    NamedMapping(NamedMapping&& other) noexcept;
    NamedMapping& operator=(NamedMapping&& other) noexcept;
    NamedMapping(const NamedMapping&) = delete;
    NamedMapping& operator=(const NamedMapping&) = delete;

    /// Null only after it was moved from.
    [[nodiscard]] char* data() const { return m_data; }
    [[nodiscard]] qint64 size() const { return m_bytes; }

  private:
    NamedMapping() = default;

    char* m_data = nullptr;
    qint64 m_bytes = 0;
    qintptr m_handle = -1; ///< of the system's object; -1 where there is none to close
};
