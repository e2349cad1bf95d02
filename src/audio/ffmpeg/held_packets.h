#pragma once

#include "audio/ffmpeg/av_handles.h"

#include <cstddef>
#include <deque>

namespace BASS {

/// The packets of about a second that were skipped instead of decoded, for they may be heard after
/// all. Between skipping and decoding again they are first reached back into, then taken out.
///
/// *Thread*: the decoder's.
class HeldPackets {
  public:
    struct Taken {
        AvPacket packet;
        bool isHeard = true; ///< false: in front of what is heard, for the decoder alone
    };

    [[nodiscard]] bool isEmpty() const { return m_packets.empty(); }
    /// Takes what `packet` holds over. frames: how long it is heard; keep: frames that are held.
    void hold(AVPacket& packet, std::size_t frames, std::size_t keep);
    /// Lets go of all but the packets of the last `frames`, with those before them that a decoder
    /// needs to find its way in. Returns the frames that are heard again.
    std::size_t reachBack(std::size_t frames);
    /// The oldest; there is one.
    Taken takeFirst();

  private:
    struct Held {
        AvPacket packet;
        std::size_t frames;
    };

    std::deque<Held> m_packets;
    std::size_t m_frames = 0;  ///< of all
    std::size_t m_preRoll = 0; ///< packets at the front that are not heard
};

} // namespace BASS
