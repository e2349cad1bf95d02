#include "audio/ffmpeg/reservoir_gate.h"

#include "audio/frame_header.h"

namespace BASS {

void ReservoirGate::reset() {
    *this = ReservoirGate();
}

ReservoirGate::Verdict ReservoirGate::judge(const std::uint8_t* packet, std::size_t size) {
    if (m_isOpen)
        return Verdict::Play;
    const auto frame = parseMpegFrame(packet, size);
    const auto reach = frame ? mainDataBegin(*frame, packet, size) : std::nullopt;
    if (!reach) {
        m_isOpen = true;
        return Verdict::Play;
    }
    const auto needed = static_cast<std::size_t>(*reach);
    if (m_isFirst && needed == 0) { // a true beginning: nothing is missing
        m_isOpen = true;
        return Verdict::Play;
    }
    if (m_isFirst)
        m_dropAfter = 1; // the first complete frame still overlaps with one that was not
    m_isFirst = false;
    if (needed <= m_saved) {
        if (m_dropAfter == 0) {
            m_isOpen = true;
            return Verdict::PlayFirst;
        }
        --m_dropAfter;
    }
    const std::size_t head = kMpegHeaderBytes + (frame->hasChecksum ? 2U : 0U) + frame->sideInfo;
    m_saved += frame->bytes > head ? frame->bytes - head : 0;
    return Verdict::Drop;
}

} // namespace BASS
