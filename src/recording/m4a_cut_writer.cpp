#include "recording/m4a_cut_writer.h"

#include "audio/frame_header.h"
#include "base/check.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr int kPacketSamples = 1024;
/// A cut can go back by as much as the stream's history holds.
constexpr qint64 kMostKeptBytes = 1024 * 1024;

const std::uint8_t* bytesOf(const AudioFrame& frame) {
    return reinterpret_cast<const std::uint8_t*>(frame.bytes.constData());
}

std::optional<AdtsFrame> headOf(const AudioFrame& frame) {
    return parseAdtsFrame(bytesOf(frame), static_cast<std::size_t>(frame.bytes.size()));
}

/// Without the ADTS header, which may carry a checksum (ISO/IEC 13818-7, section 6.2).
QByteArray packetOf(const AudioFrame& frame) {
    constexpr int kChecksum = 2;
    const bool hasChecksum = (bytesOf(frame)[1] & 1) == 0;
    return frame.bytes.mid(int{kAdtsHeaderBytes} + (hasChecksum ? kChecksum : 0));
}

qint64 bytesIn(const std::vector<QByteArray>& packets) {
    qint64 bytes = 0;
    for (const QByteArray& packet : packets)
        bytes += packet.size();
    return bytes;
}

} // namespace

bool M4aCutWriter::canWrite(const AudioFrame& first) {
    const auto head = headOf(first);
    return head && head->samples == kPacketSamples && head->channels > 0;
}

M4aCutWriter::M4aCutWriter(ByteSink& sink, const FrameHistory& before) : m_sink(sink) {
    if (!before.empty() && canWrite(before.back()))
        m_before = before.back();
}

void M4aCutWriter::begin(const AudioFrame& first) {
    const auto head = headOf(first);
    AacTrack track;
    if (head) {
        track.objectType = head->profile + 1;
        track.rateIndex = (bytesOf(first)[2] >> 2) & 15;
        track.channels = head->channels;
        track.sampleRate = head->sampleRate;
    }
    m_track = track;
    if (m_before) {
        m_skipped = kPacketSamples;
        take(*m_before);
        m_before.reset();
    }
}

void M4aCutWriter::write(const AudioFrame& frame) {
    if (!m_track)
        begin(frame);
    take(frame);
    if (m_pending.size() * kPacketSamples >= static_cast<std::size_t>(m_track->sampleRate))
        flush();
}

void M4aCutWriter::take(const AudioFrame& frame) {
    m_pending.push_back(packetOf(frame));
    ++m_taken;
}

/// One fragment, in one piece of the sink, with the header in front of the first.
void M4aCutWriter::flush() {
    if (m_pending.empty())
        return;
    const qint64 start = (m_taken - static_cast<qint64>(m_pending.size())) * kPacketSamples;
    QByteArray bytes;
    if (m_sink.size() == 0)
        bytes = mp4Header(*m_track, m_skipped, 0);
    const qint64 offset = m_sink.size() + bytes.size();
    bytes += mp4Fragment(++m_number, start, m_pending);
    m_sink.append(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                  static_cast<std::size_t>(bytes.size()));
    m_fragments.push_back({offset, start, std::move(m_pending)});
    m_pending = {};
    forgetOld();
}

void M4aCutWriter::forgetOld() {
    qint64 bytes = 0;
    for (const Fragment& fragment : m_fragments)
        bytes += bytesIn(fragment.packets);
    while (m_fragments.size() > 1 && bytes > kMostKeptBytes) {
        bytes -= bytesIn(m_fragments.front().packets);
        m_fragments.erase(m_fragments.begin());
    }
}

/// The newest fragment leaves the file and waits again.
void M4aCutWriter::reopen() {
    Fragment last = std::move(m_fragments.back());
    m_fragments.pop_back();
    m_sink.truncate(last.offset);
    --m_number;
    last.packets.insert(last.packets.end(), m_pending.begin(), m_pending.end());
    m_pending = std::move(last.packets);
}

void M4aCutWriter::takeBack(const FrameHistory& frames) {
    while (m_pending.size() < frames.size() && !m_fragments.empty())
        reopen();
    WL_CHECK(m_pending.size() >= frames.size());
    const std::size_t kept = m_pending.size() - std::min(m_pending.size(), frames.size());
    m_taken -= static_cast<qint64>(m_pending.size() - kept);
    m_pending.resize(kept);
}

void M4aCutWriter::finish() {
    flush();
    if (m_sink.size() == 0)
        return;
    const QByteArray header = mp4Header(*m_track, m_skipped, heard());
    m_sink.rewriteStart(reinterpret_cast<const std::uint8_t*>(header.constData()),
                        static_cast<std::size_t>(header.size()));
}

qint64 M4aCutWriter::heard() const {
    return std::max<qint64>(0, m_taken * kPacketSamples - m_skipped);
}

double M4aCutWriter::seconds() const {
    return m_track ? static_cast<double>(heard()) / m_track->sampleRate : 0.0;
}

} // namespace BASS
