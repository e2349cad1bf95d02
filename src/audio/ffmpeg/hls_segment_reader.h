#pragma once

#include "audio/ffmpeg/packet_framer.h"
#include "audio/hls/ts_demux.h"
#include "audio/id3_tag.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace BASS {

/// Turns segments into one elementary stream: transport streams are demultiplexed, packed audio is
/// freed of its tags, MP4 fragments are unpacked. What a segment is, its bytes tell (RFC 8216,
/// section 3). One thread at a time.
class HlsSegmentReader final : private TsDemux::Sink {
  public:
    class Sink {
      public:
        virtual ~Sink() = default;
        /// Before the first bytes, and whenever they become others than they were.
        virtual void streamBegins(FramedCodec codec) = 0;
        virtual void audio(const std::uint8_t* data, std::size_t size) = 0;
        /// It belongs to the audio that follows.
        virtual void texts(const Id3Texts& texts) = 0;
    };

    explicit HlsSegmentReader(Sink& sink) : m_sink(sink), m_ts(*this) {}

    /// map: what the segment needs before it; empty: nothing.
    void begin(const std::vector<std::uint8_t>& map);
    void feed(const std::uint8_t* data, std::size_t size);
    /// The segment is complete. False: it held no audio that can be used.
    bool end();
    /// What follows has nothing to do with what was before.
    void reset();
    /// What the last segment held.
    [[nodiscard]] FramedCodec codec() const { return m_codec; }

  private:
    enum class Kind { Unknown, Transport, Packed, Fragment, Rubbish };

    void audio(const std::uint8_t* data, std::size_t size) override;
    void id3(const std::uint8_t* data, std::size_t size) override;

    void identify(bool isEnd);
    void packedBegins(bool isEnd);
    bool takeTags();
    void endFragment();
    void tellMessages();
    void setCodec(FramedCodec codec);
    void handOn(const std::uint8_t* data, std::size_t size);

    Sink& m_sink;
    TsDemux m_ts;
    Kind m_kind = Kind::Unknown;
    FramedCodec m_codec = FramedCodec::None;  ///< of this segment
    FramedCodec m_stream = FramedCodec::None; ///< told last
    std::vector<std::uint8_t> m_map;
    std::vector<std::uint8_t> m_held; ///< not yet known what it is, or a fragment on its way
    bool m_hasAudio = false;
};

} // namespace BASS
