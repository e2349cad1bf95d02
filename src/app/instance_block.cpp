#include "app/instance_block.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {
quint16 checksumOf(const InstanceBlock& block) {
    return qChecksum(reinterpret_cast<const char*>(&block), offsetof(InstanceBlock, checksum));
}
} // namespace

void sealBlock(InstanceBlock& block) {
    block.checksum = checksumOf(block);
}

bool isBlockConsistent(const InstanceBlock& block) {
    return block.checksum == checksumOf(block);
}

bool isBlockUntouched(const InstanceBlock& block) {
    const std::array<char, sizeof block> zeros{};
    return std::memcmp(&block, zeros.data(), sizeof block) == 0;
}

void resetBlock(InstanceBlock& block) {
    // The gaps between the fields count for the checksum.
    std::memset(&block, 0, sizeof block);
    sealBlock(block);
}

void setBlockPrimary(InstanceBlock& block, qint64 pid, const QString& user) {
    block.isPrimaryPresent = true;
    block.primaryPid = pid;
    const QByteArray name = user.toUtf8();
    const auto length =
        std::min(static_cast<std::size_t>(name.size()), sizeof block.primaryUser - 1);
    std::memset(block.primaryUser, 0, sizeof block.primaryUser);
    std::memcpy(block.primaryUser, name.constData(), length);
    sealBlock(block);
}

void clearBlockPrimary(InstanceBlock& block) {
    block.isPrimaryPresent = false;
    block.primaryPid = 0;
    std::memset(block.primaryUser, 0, sizeof block.primaryUser);
    sealBlock(block);
}

QString blockPrimaryUser(const InstanceBlock& block) {
    return QString::fromUtf8(
        block.primaryUser, static_cast<int>(qstrnlen(block.primaryUser, sizeof block.primaryUser)));
}
