#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace BASS {

/// Takes the first audio stream out of an MPEG transport stream (ISO/IEC 13818-1), and the timed
/// ID3 tags beside it. What comes out is the elementary stream to the byte.
///
/// Pure, any chunking, one thread at a time; memory is bounded whatever the bytes are.
class TsDemux {
  public:
    enum class Codec {
        None,
        Mpeg,        ///< MPEG audio, layers 1 to 3
        Adts,        ///< AAC in ADTS
        Unsupported, ///< the programme has audio, but of no kind that is played here
    };
    class Sink {
      public:
        virtual ~Sink() = default;
        virtual void audio(const std::uint8_t* data, std::size_t size) = 0;
        /// A whole ID3v2 tag; it belongs to the audio that follows.
        virtual void id3(const std::uint8_t* data, std::size_t size) = 0;
    };

    explicit TsDemux(Sink& sink) : m_sink(sink) {}

    void feed(const std::uint8_t* data, std::size_t size);
    /// The segment has ended; the next one goes on with the same streams.
    void segmentEnds();
    /// What follows has nothing to do with what was before.
    void reset();
    [[nodiscard]] Codec codec() const { return m_codec; }

  private:
    static constexpr std::size_t kPacketBytes = 188;

    /// A packetised elementary stream on its way in.
    struct Pes {
        bool isOpen = false;
        bool isHeaderDone = false;
        std::vector<std::uint8_t> header;
        std::vector<std::uint8_t> body;    ///< of metadata only
        std::size_t bodyLeft = 0;          ///< as its header says
        bool isBounded = false;            ///< ... and it says it
        std::optional<std::uint64_t> time; ///< 90 kHz
    };
    struct TimedTag {
        std::optional<std::uint64_t> time;
        std::vector<std::uint8_t> bytes;
    };

    void takePacket(const std::uint8_t* packet);
    void takeSection(int pid, const std::uint8_t* data, std::size_t size, bool isStart);
    void takePat(const std::uint8_t* section, std::size_t size);
    void takePmt(const std::uint8_t* section, std::size_t size);
    void takePes(Pes& pes, const std::uint8_t* data, std::size_t size, bool isStart);
    bool takeHeader(Pes& pes, const std::uint8_t*& data, std::size_t& size);
    void takeBody(Pes& pes, const std::uint8_t* data, std::size_t size);
    void closePes(Pes& pes);
    void tellTags(std::optional<std::uint64_t> time);

    Sink& m_sink;
    std::array<std::uint8_t, kPacketBytes> m_packet{};
    std::size_t m_fill = 0;
    std::map<int, std::vector<std::uint8_t>> m_sections; ///< unfinished, by PID
    int m_pmtPid = -1;
    int m_audioPid = -1;
    int m_tagPid = -1;
    Codec m_codec = Codec::None;
    Pes m_audio;
    Pes m_tag;
    std::vector<TimedTag> m_tags; ///< whose time has not come
};

} // namespace BASS
