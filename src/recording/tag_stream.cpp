#include "recording/tag_stream.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr qint64 kBlockBytes = 1024 * 1024;

} // namespace

TagLib::ByteVector TagStream::readBlock(unsigned long length) {
    const QByteArray bytes = m_file.read(static_cast<qint64>(length));
    return {bytes.constData(), static_cast<unsigned int>(bytes.size())};
}

void TagStream::writeBlock(const TagLib::ByteVector& data) {
    if (m_file.write(data.data(), data.size()) != static_cast<qint64>(data.size()))
        m_hasFailed = true;
}

void TagStream::insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) {
    const auto from = static_cast<qint64>(start + replace);
    moveBytes(std::min(from, m_file.size()), static_cast<qint64>(start + data.size()));
    seek(static_cast<long>(start));
    writeBlock(data);
}

void TagStream::removeBlock(unsigned long start, unsigned long length) {
    const auto from = static_cast<qint64>(start + length);
    moveBytes(std::min(from, m_file.size()), static_cast<qint64>(start));
}

/// Moves everything from a place on to another one; the file ends behind it.
void TagStream::moveBytes(qint64 from, qint64 to) {
    const qint64 count = m_file.size() - from;
    const qint64 blocks = (count + kBlockBytes - 1) / kBlockBytes;
    for (qint64 n = 0; n < blocks && from != to; ++n) {
        // to the back: the last block first, or it would be overwritten before it is read
        const qint64 at = (to > from ? blocks - 1 - n : n) * kBlockBytes;
        const qint64 size = std::min(kBlockBytes, count - at);
        m_hasFailed = m_hasFailed || !m_file.seek(from + at);
        const QByteArray block = m_file.read(size);
        m_hasFailed = m_hasFailed || block.size() != size || !m_file.seek(to + at) ||
                      m_file.write(block) != size;
    }
    m_hasFailed = m_hasFailed || (to < from && !m_file.resize(to + count));
}

void TagStream::seek(long offset, Position position) {
    const qint64 base = position == Current ? m_file.pos() : position == End ? m_file.size() : 0;
    m_file.seek(std::max<qint64>(0, base + offset));
}

void TagStream::truncate(long length) {
    m_hasFailed = m_hasFailed || !m_file.resize(length);
}

} // namespace BASS
