#include "recording/flac_cut_writer.h"

#include "recording/flac_frame.h"

namespace BASS {
namespace {

constexpr std::size_t kRememberedFrames = 4096;

void put(ByteSink& sink, const QByteArray& bytes) {
    sink.append(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                static_cast<std::size_t>(bytes.size()));
}

} // namespace

FlacCutWriter::FlacCutWriter(ByteSink& sink) : m_sink(sink) {}

void FlacCutWriter::write(const AudioFrame& frame) {
    if (m_header.isEmpty()) {
        m_header = flacPartHeader(frame.header);
        m_sampleRate = frame.sampleRate;
        put(m_sink, m_header);
    }
    const auto head = parseFlacFrame(reinterpret_cast<const std::uint8_t*>(frame.bytes.constData()),
                                     static_cast<std::size_t>(frame.bytes.size()));
    const bool countsSamples = head && head->isVariable;
    const QByteArray bytes = renumberedFlacFrame(
        frame.bytes, countsSamples ? static_cast<quint64>(m_samples) : m_frames);
    put(m_sink, bytes);
    m_samples += frame.samples;
    ++m_frames;
    m_sizes.push_back(bytes.size());
    if (m_sizes.size() > kRememberedFrames)
        m_sizes.pop_front();
}

void FlacCutWriter::takeBack(const FrameHistory& frames) {
    qint64 bytes = 0;
    for (auto frame = frames.rbegin(); frame != frames.rend() && !m_sizes.empty(); ++frame) {
        bytes += m_sizes.back();
        m_sizes.pop_back();
        m_samples -= frame->samples;
        --m_frames;
    }
    m_sink.truncate(m_sink.size() - bytes);
}

void FlacCutWriter::finish() {
    if (m_header.isEmpty())
        return;
    QByteArray header = m_header;
    setFlacTotal(header, kFlacLead, static_cast<quint64>(m_samples));
    m_sink.rewriteStart(reinterpret_cast<const std::uint8_t*>(header.constData()),
                        static_cast<std::size_t>(header.size()));
}

double FlacCutWriter::seconds() const {
    return m_sampleRate > 0 ? static_cast<double>(m_samples) / m_sampleRate : 0.0;
}

} // namespace BASS
