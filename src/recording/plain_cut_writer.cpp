#include "recording/plain_cut_writer.h"

namespace BASS {
namespace {

double secondsOf(const AudioFrame& frame) {
    return frame.sampleRate > 0 ? static_cast<double>(frame.samples) / frame.sampleRate : 0.0;
}

} // namespace

PlainCutWriter::PlainCutWriter(ByteSink& sink) : m_sink(sink) {}

void PlainCutWriter::write(const AudioFrame& frame) {
    m_seconds += secondsOf(frame);
    m_sink.append(reinterpret_cast<const std::uint8_t*>(frame.bytes.constData()),
                  static_cast<std::size_t>(frame.bytes.size()));
}

void PlainCutWriter::takeBack(const FrameHistory& frames) {
    qint64 bytes = 0;
    for (const AudioFrame& frame : frames) {
        bytes += frame.bytes.size();
        m_seconds -= secondsOf(frame);
    }
    m_sink.truncate(m_sink.size() - bytes);
}

} // namespace BASS
