#pragma once

#include <QString>

#include <cstddef>

/// What instances leave for each other in shared memory. Read and written under the block's lock
/// only.
struct InstanceBlock {
    bool isPrimaryPresent;
    quint32 secondaries; ///< counted up, the number of the last one
    qint64 primaryPid;
    char primaryUser[128]; ///< UTF-8, ends with a zero
    quint16 checksum;      ///< CRC-16 (qChecksum) of all before it
};

constexpr int kInstanceBlockBytes = 152;
static_assert(sizeof(InstanceBlock) == kInstanceBlockBytes);
static_assert(offsetof(InstanceBlock, checksum) == 144);

/// Writes the checksum; after every change.
void sealBlock(InstanceBlock& block);
/// The stored checksum is right.
bool isBlockConsistent(const InstanceBlock& block);
/// No process has ever written to it.
bool isBlockUntouched(const InstanceBlock& block);
/// No primary, no secondaries; sealed.
void resetBlock(InstanceBlock& block);
/// Sealed. A name too long for its place loses its end.
void setBlockPrimary(InstanceBlock& block, qint64 pid, const QString& user);
/// Sealed.
void clearBlockPrimary(InstanceBlock& block);
QString blockPrimaryUser(const InstanceBlock& block);
