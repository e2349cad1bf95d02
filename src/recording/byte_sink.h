#pragma once

#include <QtGlobal>

#include <cstddef>
#include <cstdint>

namespace BASS {

/// Where a cut writer puts one file. Failures stick: after the first one everything is refused and
/// the owner of the sink finds out, so that writers need not ask at every byte.
/// *Thread*: one at a time.
class ByteSink {
  public:
    virtual ~ByteSink() = default;

    /// Appends; one call holds whole frames or pages only, so that a file ends on a boundary even
    /// where the disk is full.
    virtual bool append(const std::uint8_t* data, std::size_t size) = 0;
    /// Overwrites the first bytes of the file; the file is at least that long.
    virtual bool rewriteStart(const std::uint8_t* data, std::size_t size) = 0;
    /// Shortens the file.
    virtual bool truncate(qint64 size) = 0;
    /// Bytes in the file.
    [[nodiscard]] virtual qint64 size() const = 0;
};

} // namespace BASS
