#include "recording/mp3_cut_writer.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr int kMaxReservoir = 511; ///< main_data_begin has nine bits

const std::uint8_t* raw(const QByteArray& bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.constData());
}

std::optional<MpegFrame> parse(const QByteArray& frame) {
    return parseMpegFrame(raw(frame), static_cast<std::size_t>(frame.size()));
}

int reachBack(const QByteArray& frame) {
    const auto parsed = parse(frame);
    return parsed ? mainDataBegin(*parsed, raw(frame), static_cast<std::size_t>(frame.size()))
                        .value_or(0)
                  : 0;
}

/// Frames that a decoder must have got right before one that is to be right: for one granule's
/// overlap and the filter bank's memory a whole frame, of the half-rate ones two.
std::size_t settlingFrames(int frameSamples) {
    constexpr int kFullFrame = 1152;
    return frameSamples == kFullFrame ? 1 : 2;
}

/// Frames that the field for the delay can hide.
int maxDelayFrames(int frameSamples) {
    return (kMaxMp3Delay + kMp3DecoderDelay) / std::max(1, frameSamples);
}

/// The last `bytes` of main data in frames [0, end); where there is less, zeros stand in front.
QByteArray reservoirBefore(const FrameHistory& frames, std::size_t end, int bytes) {
    QByteArray data;
    for (std::size_t n = end; n > 0 && data.size() < bytes; --n)
        data.prepend(mp3MainData(frames[n - 1].bytes));
    return data.right(bytes).rightJustified(bytes, '\0');
}

/// How many first frames cannot be decoded because what they reach back to is missing; nothing:
/// more frames are needed to tell.
std::optional<int> framesWithoutReservoir(const FrameHistory& frames, int limit) {
    int available = 0;
    for (std::size_t n = 0; n < frames.size(); ++n) {
        if (reachBack(frames[n].bytes) <= available || static_cast<int>(n) >= limit)
            return static_cast<int>(n);
        available += mp3MainData(frames[n].bytes).size();
    }
    return std::nullopt;
}

} // namespace

Mp3CutWriter::Mp3CutWriter(ByteSink& sink, const FrameHistory& before, bool isByteExact)
    : m_sink(sink), m_before(before), m_isPlain(isByteExact) {}

void Mp3CutWriter::write(const AudioFrame& frame) {
    if (m_hasBegun) {
        writeFrame(frame);
        return;
    }
    if (m_waiting.empty()) {
        const auto parsed = parse(frame.bytes);
        m_isPlain = m_isPlain || !parsed || parsed->layer != 3;
        // a file has one Info frame, its own: one that the stream begins with is left out
        if (!m_isPlain && m_before.empty() && isMp3InfoFrame(frame.bytes))
            return;
        m_model = frame.bytes.left(static_cast<int>(kMpegHeaderBytes));
        m_frameSamples = static_cast<int>(frame.samples);
        m_sampleRate = frame.sampleRate;
    }
    m_waiting.push_back(frame);
    const int limit = maxDelayFrames(m_frameSamples);
    if (m_isPlain || !m_before.empty() || framesWithoutReservoir(m_waiting, limit))
        begin();
}

void Mp3CutWriter::begin() {
    if (m_hasBegun || m_waiting.empty())
        return;
    m_hasBegun = true;
    if (!m_isPlain) {
        if (m_before.empty())
            beginWithout();
        else
            beginAfter(m_before);
    }
    m_before.clear();
    for (const AudioFrame& frame : m_waiting)
        writeFrame(frame);
    m_waiting.clear();
}

void Mp3CutWriter::beginAfter(const FrameHistory& before) {
    const std::size_t first =
        before.size() - std::min(settlingFrames(m_frameSamples), before.size());
    const int reach = std::min(kMaxReservoir, reachBack(before[first].bytes));

    QByteArray carrier;
    if (reach > 0)
        carrier = mp3CarrierFrame(raw(m_model), reservoirBefore(before, first, reach));
    m_delayFrames = static_cast<int>(before.size() - first) + (carrier.isEmpty() ? 0 : 1);
    writeLead({});
    if (!carrier.isEmpty())
        writeLead(carrier);
    for (std::size_t n = first; n < before.size(); ++n)
        writeLead(before[n].bytes);
}

void Mp3CutWriter::beginWithout() {
    const int limit = maxDelayFrames(m_frameSamples);
    const int missing =
        framesWithoutReservoir(m_waiting, limit).value_or(static_cast<int>(m_waiting.size()));
    // decoders skip 529 samples at least: a silent frame gives them something to skip
    const bool needsSilence = missing == 0;
    const int unheard = std::min(missing + static_cast<int>(settlingFrames(m_frameSamples)), limit);
    m_delayFrames = needsSilence ? 1 : unheard;
    m_samples -= needsSilence ? 0 : static_cast<qint64>(unheard) * m_frameSamples;
    writeLead({});
    if (needsSilence)
        writeLead(mp3CarrierFrame(raw(m_model), {}));
}

/// Empty: the Info frame itself.
void Mp3CutWriter::writeLead(const QByteArray& bytes) {
    if (!bytes.isEmpty()) {
        m_table.add(m_sink.size());
        m_sink.append(raw(bytes), static_cast<std::size_t>(bytes.size()));
        return;
    }
    Mp3InfoFields fields;
    fields.delay = std::clamp(m_delayFrames * m_frameSamples - kMp3DecoderDelay, 0, kMaxMp3Delay);
    const QByteArray info = mp3InfoFrame(raw(m_model), fields);
    m_sink.append(raw(info), static_cast<std::size_t>(info.size()));
}

void Mp3CutWriter::writeFrame(const AudioFrame& frame) {
    m_table.add(m_sink.size());
    noteBitrate(frame.bytes);
    ++m_frames;
    m_samples += frame.samples;
    m_sink.append(raw(frame.bytes), static_cast<std::size_t>(frame.bytes.size()));
}

void Mp3CutWriter::noteBitrate(const QByteArray& frame) {
    const int index = raw(frame)[2] >> 4;
    m_isVariable = m_isVariable || (m_bitrateIndex != 0 && m_bitrateIndex != index);
    m_bitrateIndex = index;
}

void Mp3CutWriter::takeBack(const FrameHistory& frames) {
    qint64 bytes = 0;
    for (const AudioFrame& frame : frames) {
        if (!m_waiting.empty()) {
            m_waiting.pop_back();
            continue;
        }
        bytes += frame.bytes.size();
        m_samples -= frame.samples;
        m_table.takeBack(1);
        --m_frames;
    }
    if (bytes > 0)
        m_sink.truncate(m_sink.size() - bytes);
}

void Mp3CutWriter::flush() {}

void Mp3CutWriter::finish() {
    begin();
    if (m_isPlain || m_frames == 0)
        return;
    Mp3InfoFields fields;
    fields.delay = std::clamp(m_delayFrames * m_frameSamples - kMp3DecoderDelay, 0, kMaxMp3Delay);
    fields.isVariable = m_isVariable;
    fields.audioBytes = m_sink.size();
    fields.table = &m_table;
    const QByteArray info = mp3InfoFrame(raw(m_model), fields);
    m_sink.rewriteStart(raw(info), static_cast<std::size_t>(info.size()));
}

double Mp3CutWriter::seconds() const {
    return m_sampleRate > 0 ? static_cast<double>(std::max<qint64>(0, m_samples)) / m_sampleRate
                            : 0.0;
}

} // namespace BASS
