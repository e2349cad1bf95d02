#pragma once

#include "audio/ffmpeg/reservoir_gate.h"
#include "audio/stream_sniffer.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace BASS {

/// What feeds a LinkDecoder.
struct ByteSource {
    static constexpr int kEnd = 0;
    static constexpr int kAborted = -1;
    /// Up to `max` bytes; waits for the first. kEnd, kAborted.
    std::function<int(std::uint8_t* out, int max)> read;
    /// From the start; the new place, or -1. Empty: the source only runs forward.
    std::function<std::int64_t(std::int64_t offset)> seek;
    std::int64_t size = 0; ///< 0: not known
};

/// Decodes one stream, or one link of a chained one, to stereo floats at the device's rate.
/// *Thread*: one at a time.
class LinkDecoder {
  public:
    enum class Step {
        Audio,   ///< block() has frames
        Nothing, ///< go on
        End,
        Aborted,
        Broken, ///< nothing more can be decoded
    };
    struct Block {
        std::vector<float> samples; ///< interleaved stereo
        std::size_t silence = 0;    ///< instead of samples: frames that were skipped
        std::uint64_t position = 0; ///< of the packet in the bytes that this decoder has read
        bool hasPosition = false;
    };
    struct Info {
        int sampleRate = 0; ///< of the source
        int channels = 0;
        int bits = 0;    ///< a sample; 0: not known
        int bitrate = 0; ///< kbit/s, measured
        int layer = 0;   ///< MPEG audio only
        bool isFloat = false;
    };

    LinkDecoder(int outputRate, ByteSource source);
    ~LinkDecoder();
    LinkDecoder(const LinkDecoder&) = delete;
    LinkDecoder& operator=(const LinkDecoder&) = delete;

    /// Reads the headers. False: no such stream, or aborted.
    bool open(StreamFormat format);
    Step step();
    /// From now on packets are read and counted, not decoded: their time passes in silence.
    void skip();
    /// Decodes again. Of the silence given out last up to `frames` frames come once more, as the
    /// sound that they are; returns how many. Where that is not held any more, sound comes back as
    /// it does at the start, without the frames that lack their predecessors.
    std::size_t rejoin(std::size_t frames);
    /// The next step needs no more bytes.
    [[nodiscard]] bool isCatchingUp() const;
    /// The owner may change the samples until the next step.
    [[nodiscard]] Block& block();
    [[nodiscard]] Info info() const;
    /// Seconds; 0: not known.
    [[nodiscard]] double duration() const;
    /// "NAME=value" texts of the container, each zero-terminated, where they have changed since the
    /// last call; else empty.
    [[nodiscard]] std::string takeComments();
    /// Goes to the frame at or before `seconds` and drops what comes before it.
    bool seek(double seconds);

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace BASS
