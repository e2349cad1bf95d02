#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace BASS {

/// Takes the title blocks out of an ICY stream: after every `metaint` audio bytes stands one byte n
/// and then n * 16 bytes of text, padded with zeros. Pure, any chunking, one thread at a time.
class IcyDemux {
  public:
    class Sink {
      public:
        virtual ~Sink() = default;
        virtual void audio(const std::uint8_t* data, std::size_t size) = 0;
        /// A block that is not empty, without its padding; the audio bytes before it have been
        /// handed over, those behind it have not.
        virtual void title(std::string_view block) = 0;
    };

    /// metaint: as the server said it; 0 and senseless values mean a stream without titles.
    IcyDemux(std::int64_t metaint, Sink& sink);

    void feed(const std::uint8_t* data, std::size_t size);

  private:
    static constexpr std::size_t kMaxBlock = 255U * 16U;

    enum class State { Audio, Length, Block };

    void blockEnds();

    Sink& m_sink;
    std::size_t m_metaint = 0;
    State m_state = State::Audio;
    std::size_t m_audioLeft = 0; ///< until the next length byte
    std::size_t m_blockSize = 0;
    std::size_t m_blockFill = 0;
    std::array<char, kMaxBlock> m_block{};
};

} // namespace BASS
