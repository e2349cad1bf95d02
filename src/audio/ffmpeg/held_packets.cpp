#include "audio/ffmpeg/held_packets.h"

extern "C" {
#include <libavcodec/packet.h>
}

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

/// Packets that a decoder needs in front of the first one that is heard.
constexpr std::size_t kPreRollPackets = 10;

} // namespace

void HeldPackets::hold(AVPacket& packet, std::size_t frames, std::size_t keep) {
    Held last{AvPacket(av_packet_alloc()), frames};
    av_packet_move_ref(last.packet.get(), &packet);
    m_frames += frames;
    m_packets.push_back(std::move(last));
    const std::size_t spare =
        m_packets.size() > kPreRollPackets ? m_packets[kPreRollPackets].frames : 0;
    if (m_frames > keep + spare) {
        m_frames -= m_packets.front().frames;
        m_packets.pop_front();
    }
}

std::size_t HeldPackets::reachBack(std::size_t frames) {
    std::size_t heard = m_packets.size();
    std::size_t again = 0;
    for (; heard > 0 && again + m_packets[heard - 1].frames <= frames; --heard)
        again += m_packets[heard - 1].frames;
    m_preRoll = std::min(heard, kPreRollPackets);
    m_packets.erase(m_packets.begin(),
                    m_packets.begin() + static_cast<std::ptrdiff_t>(heard - m_preRoll));
    return again;
}

HeldPackets::Taken HeldPackets::takeFirst() {
    Taken first{std::move(m_packets.front().packet), m_preRoll == 0};
    m_packets.pop_front();
    m_preRoll -= first.isHeard ? 0 : 1;
    if (m_packets.empty())
        m_frames = 0;
    return first;
}

} // namespace BASS
