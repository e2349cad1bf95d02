#pragma once

#include "audio/bass_defs.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace BASS {

class Encoder;

/// Where a channel's decoded audio branches off to its encoders: a little late, so that a cut can
/// be made at a place just passed. Each encoder gets an unbroken run of frames.
///
/// *Thread*: feed() on the decode thread, the rest on any; cut() waits for none of the others, for
/// it comes from the thread that brings the bytes of every stream. *Owner*: the channel.
class PcmTap {
  public:
    /// Where an encoder takes over from the one before it.
    struct Cut {
        std::uint64_t bytePosition; ///< of the stream: the first frame from there or later
        std::uint64_t delayFrames;  ///< after that frame
    };

    explicit PcmTap(int rate);

    /// How late; half a second where nothing is said. Before the first frame.
    void setHold(std::chrono::milliseconds hold);
    [[nodiscard]] bool isUsed() const { return m_isUsed.load(); }
    /// Interleaved stereo; bytePosition: where in the stream it comes from. Copies, never waits.
    void feed(const float* samples, std::size_t frames, std::uint64_t bytePosition);

    /// From the next frame fed. False: closed.
    bool attach(std::shared_ptr<Encoder> encoder, bool isPaused);
    /// Ends it, and those that it waits for. With `isComplete` the past that is still held back is
    /// encoded. False: not here.
    bool stop(const Encoder& encoder, bool isComplete);
    /// Stops all; nothing is attached any more.
    void close();
    /// As stop(), but it does not end: it can be attached elsewhere. False: not here.
    bool release(const Encoder& encoder);
    bool setPaused(const Encoder& encoder, bool isPaused);
    [[nodiscard]] bool isClosed() const;
    /// Of the encoder that is furthest behind.
    [[nodiscard]] std::size_t queuedFrames() const;
    [[nodiscard]] bool isPaused(const Encoder& encoder);
    /// `next` goes on where `old` (which may itself wait for its turn) ends; at the earliest at the
    /// first frame that has not been handed on. False: `old` is not here, or has a successor. One
    /// whose line ends meanwhile is ended without audio.
    bool cut(const Encoder& old, std::shared_ptr<Encoder> next, const Cut& where);
    /// Where among the frames given to an encoder that is at work the first one from this place of
    /// the stream is. Nothing: not given yet, or not here.
    [[nodiscard]] std::optional<std::uint64_t> encodedFrame(const Encoder& encoder,
                                                            std::uint64_t bytePosition);
    /// Makes the cuts that wait, where nothing is fed that would do it. Called behind each cut().
    void settle();

  private:
    struct Stage {
        std::shared_ptr<Encoder> encoder;
        Cut where{};
        std::optional<std::uint64_t> begin; ///< frame, once known
        std::uint64_t given = 0;            ///< frames
    };
    /// Encoders that follow one another: the first is at work, the others wait for their turn.
    struct Line {
        std::deque<Stage> stages;
        std::uint64_t next = 0; ///< first frame that has not been handed on
        bool isPaused = false;
    };
    struct WaitingCut {
        HENCODE old = 0;
        Stage stage;
    };
    struct Chunk {
        std::uint64_t first;
        std::vector<float> samples;
    };
    struct Mark {
        std::uint64_t bytePosition;
        std::uint64_t frame;
    };

    void takeCuts();
    void forgetEnd(HENCODE encoder);
    void serve(Line& line, std::uint64_t upTo) const;
    void give(Line& line, std::uint64_t upTo) const;
    void findPlaces(Line& line) const;
    [[nodiscard]] std::optional<std::uint64_t> frameAt(std::uint64_t bytePosition) const;
    void forget();
    void remove(const Line& line);
    [[nodiscard]] std::uint64_t dueFrame() const;
    std::deque<Line>::iterator lineOf(const Encoder& encoder);
    static std::deque<Stage>::iterator stageOf(Line& line, const Encoder& encoder);

    const std::uint64_t m_rate;
    const std::uint64_t m_markFrames; ///< how far back places of bytes are known
    std::atomic<bool> m_isUsed{false};

    mutable std::mutex m_mutex; ///< guards all below
    std::uint64_t m_holdFrames = 0;
    std::deque<Line> m_lines;
    std::deque<Chunk> m_chunks;
    std::deque<Mark> m_marks;
    std::uint64_t m_fed = 0; ///< frames
    bool m_isClosed = false;

    std::mutex m_cutMutex;       ///< guards all below; taken last, and for a few instructions only
    std::vector<HENCODE> m_ends; ///< the last one of each line, those of m_cuts included
    std::vector<WaitingCut> m_cuts;
};

} // namespace BASS
