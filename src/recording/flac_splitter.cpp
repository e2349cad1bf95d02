#include "recording/flac_splitter.h"

#include "recording/flac_frame.h"

namespace BASS {
namespace {

constexpr std::size_t kMaxFrameBytes = 4 * 1024 * 1024;

} // namespace

FlacSplitter::FlacSplitter(qint64 position) : m_position(position) {}

void FlacSplitter::push(const char* data, qsizetype size, FrameList& frames) {
    m_buffer.append(data, static_cast<int>(size));
    if (!m_header.isEmpty() || takeHeader())
        walk(frames, false);
}

void FlacSplitter::finish(FrameList& frames) {
    if (!m_header.isEmpty())
        walk(frames, true);
    m_dropped += static_cast<qint64>(left());
    m_buffer.clear();
    m_cursor = m_scanned = 0;
    m_isInSync = false;
}

bool FlacSplitter::takeHeader() {
    const qint64 size = flacHeaderBytes(bytes(), left());
    if (size < kFlacLead + kFlacInfoBytes)
        return false;
    m_header = m_buffer.left(static_cast<int>(size));
    const FlacInfo info = parseFlacInfo(bytes(kFlacLead));
    m_sampleRate = info.sampleRate;
    m_channels = info.channels;
    remove(static_cast<std::size_t>(size));
    return true;
}

void FlacSplitter::walk(FrameList& frames, bool isEnd) {
    while (m_isInSync ? scan(frames, isEnd) : seek()) {
    }
    m_buffer.remove(0, static_cast<int>(m_cursor));
    m_cursor = 0;
}

/// Looks for a frame header. False: more bytes are needed.
bool FlacSplitter::seek() {
    while (left() >= kMaxFlacFrameHeader) {
        if (parseFlacFrame(bytes(), left())) {
            m_isInSync = true;
            m_scanned = 0;
            m_checksum = 0;
            return true;
        }
        remove(1);
        ++m_dropped;
        m_hasGap = true;
    }
    return false;
}

/// Looks for the end of the frame at the cursor. False: more bytes are needed.
bool FlacSplitter::scan(FrameList& frames, bool isEnd) {
    while (left(m_scanned) >= (isEnd ? 1 : kMaxFlacFrameHeader + 1)) {
        m_checksum = flacChecksum(bytes(m_scanned), 1, m_checksum);
        ++m_scanned;
        if (m_checksum != 0)
            continue;
        const bool isLast = isEnd && left(m_scanned) == 0;
        if (isLast || parseFlacFrame(bytes(m_scanned), left(m_scanned))) {
            emitFrame(m_scanned, frames);
            return true;
        }
    }
    if (m_scanned < kMaxFrameBytes)
        return false;
    remove(1); // no frame is so long: this was no header
    ++m_dropped;
    m_isInSync = false;
    m_hasGap = true;
    return true;
}

void FlacSplitter::emitFrame(std::size_t size, FrameList& frames) {
    const auto head = parseFlacFrame(bytes(), size);
    AudioFrame frame;
    frame.bytes = m_buffer.mid(static_cast<int>(m_cursor), static_cast<int>(size));
    frame.position = m_position;
    frame.samples = head ? head->samples : 0;
    frame.sampleRate = m_sampleRate;
    frame.stream = static_cast<quint32>(m_sampleRate * 10 + m_channels);
    frame.followsGap = m_hasGap;
    frame.header = m_header;
    frames.push_back(std::move(frame));
    m_hasGap = false;
    remove(size);
    m_scanned = 0;
    m_checksum = 0;
    m_isInSync = left() >= kMaxFlacFrameHeader;
}

void FlacSplitter::remove(std::size_t size) {
    m_cursor += size;
    m_position += static_cast<qint64>(size);
}

const std::uint8_t* FlacSplitter::bytes(std::size_t at) const {
    return reinterpret_cast<const std::uint8_t*>(m_buffer.constData()) + m_cursor + at;
}

std::size_t FlacSplitter::left(std::size_t at) const {
    return static_cast<std::size_t>(m_buffer.size()) - m_cursor - at;
}

} // namespace BASS
