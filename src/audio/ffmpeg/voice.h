#pragma once

#include "audio/bass_defs.h"
#include "audio/ffmpeg/gain_ramp.h"
#include "audio/ffmpeg/heard_spectrum.h"
#include "audio/ffmpeg/semaphore.h"
#include "audio/ffmpeg/spsc_ring.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace BASS {

/// What one stream gives to the output: a ring of decoded stereo frames with its volume, peaks and
/// position.
///
/// *Thread*: three sides, marked below; each side is one thread at a time. *Life*: outlives its
/// place in the Mixer.
class Voice {
  public:
    enum class Mode { Stopped, Playing, Paused };
    enum Event : std::uint32_t {
        kTagDue = 1,
        kStalled = 2,
        kResumed = 4,
        kSlideEnded = 8,
        kEnded = 16,
    };
    static constexpr std::size_t kChannels = 2;
    static constexpr std::size_t kCapacityFrames = 32768;
    /// The decoder sleeps until so much of what is kept is left: time enough for a thread that a
    /// busy disk or processor holds up, and still no more than five or six wakes a second.
    static constexpr std::size_t kLowPercent = 75;
    /// While nobody hears it: one wake for a long step of the clock.
    static constexpr std::size_t kUnheardLowPercent = 40;
    static constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

    /// events: posted whenever takeEvents() has something new.
    Voice(std::uint32_t rate, Semaphore& events);

    // --- decode side ----------------------------------------------------------------------------
    /// Returns the frames taken; the rest waits until waitForSpace() comes back.
    std::size_t write(const float* samples, std::size_t frames);
    /// As write(), and whatever the ring holds is silence too.
    std::size_t writeSilence(std::size_t frames);
    /// The decoder may come late.
    void setUnheard(bool isUnheard) { m_isUnheard.store(isUnheard); }
    /// Blocks until a good part of the ring (or of what it is kept at) is free, or wakeDecoder().
    void waitForSpace();
    /// The ring is filled with no more than this: changes are heard sooner. 0: with what fits.
    void setKept(std::uint32_t milliseconds) { m_keptMs.store(milliseconds); }
    /// It has what it is kept at.
    [[nodiscard]] bool isFull() const;
    void wakeDecoder() { m_space.post(); }
    /// No more frames will come (or, after a jump, they will again).
    void setSourceEnded(bool hasEnded) { m_sourceEnded.store(hasEnded); }
    /// Drops what has not been heard; the next frame written is number `frame` of the source.
    void restartAt(std::uint64_t frame);
    /// As restartAt(), where the next frames are at hand: until they are written, or false is set,
    /// an empty ring is no stall.
    void catchUpAt(std::uint64_t frame);
    void setCatchingUp(bool isOn) { m_isCatchingUp.store(isOn); }
    /// Number that the next written frame will have.
    [[nodiscard]] std::uint64_t writtenFrame() const;
    [[nodiscard]] std::size_t bufferedFrames() const { return m_ring.readable() / kChannels; }

    // --- control side ---------------------------------------------------------------------------
    void setMode(Mode mode) { m_mode.store(mode); }
    [[nodiscard]] Mode mode() const { return m_mode.load(); }
    void setVolume(float value);
    void slideVolume(float value, std::uint32_t milliseconds);
    [[nodiscard]] const GainRamp& volume() const { return m_gain; }
    /// Any thread: turned down to nothing, and not on its way up again.
    [[nodiscard]] bool isMuted() const { return m_gain.isMuted(); }
    [[nodiscard]] bool isStalled() const { return m_isStalled.load(); }
    [[nodiscard]] bool hasEnded() const { return m_hasEnded.load(); }
    /// Source frames heard.
    [[nodiscard]] std::uint64_t heardFrame() const;
    /// 0 to 32768 in the low (left) and high (right) half.
    [[nodiscard]] std::uint32_t level() const;
    /// See HeardSpectrum; any thread.
    bool spectrum(float* bins) { return m_spectrum.magnitudes(bins); }
    [[nodiscard]] std::uint32_t rate() const { return m_rate; }
    /// Per cent still missing before a stalled voice goes on; 0 while it plays.
    [[nodiscard]] std::uint32_t missingPercent() const;

    // --- dispatcher -----------------------------------------------------------------------------
    std::uint32_t takeEvents() { return m_events.exchange(0); }
    /// kTagDue follows once this frame is heard; kNever disarms.
    void armTag(std::uint64_t frame) { m_tagFrame.store(frame); }

    // --- output callback ------------------------------------------------------------------------
    /// Adds up to `frames` frames to `out`. False where it does not play.
    bool render(float* out, std::size_t frames);
    /// Plays, and has not so much left, though its source has.
    [[nodiscard]] bool isThin(std::size_t frames) const;

  private:
    std::size_t mix(float* out, std::size_t frames);
    std::size_t passSilence(std::size_t frames);
    void addRamp(const float* samples, std::size_t count, float* out);
    bool isWaitingForRefill();
    bool isWaitingToCatchUp(std::size_t frames);
    void raise(std::uint32_t events);
    void askForMore();
    [[nodiscard]] std::size_t kept() const;
    [[nodiscard]] std::size_t lowMark() const;
    [[nodiscard]] std::size_t refillFrames() const;

    const std::uint32_t m_rate;
    Semaphore& m_signal;
    Semaphore m_space;
    SpscRing<float> m_ring{kCapacityFrames * kChannels};
    GainRamp m_gain;
    HeardSpectrum m_spectrum;

    std::atomic<Mode> m_mode{Mode::Stopped};
    std::atomic<bool> m_decoderWaits{false};
    std::atomic<std::uint32_t> m_keptMs{0};
    std::atomic<bool> m_isUnheard{false};
    std::atomic<bool> m_isCatchingUp{false};
    std::atomic<bool> m_sourceEnded{false};
    std::atomic<bool> m_isStalled{false};
    std::atomic<bool> m_hasEnded{false};
    std::atomic<std::uint64_t> m_skipTo{0};   ///< ring position before which nothing is heard
    std::atomic<std::uint64_t> m_silentTo{0}; ///< ring position before which all is silence
    std::atomic<std::int64_t> m_base{0};      ///< source frame minus ring frame
    std::atomic<std::uint64_t> m_tagFrame{kNever};
    std::atomic<std::uint32_t> m_events{0};
    std::atomic<std::uint32_t> m_peak{0};     ///< of the last block
    std::atomic<std::uint32_t> m_lastPeak{0}; ///< of the block before
};

} // namespace BASS
