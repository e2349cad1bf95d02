#include "audio/ffmpeg/voice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace BASS {
namespace {

/// A volume set while it sounds moves there within this time: no click.
constexpr std::uint32_t kDeclickMs = 10;
/// After a stall the ring is filled this far, so that one late packet is no second stall.
constexpr std::uint32_t kRefillMs = 500;

/// The greatest distance from zero on either side. The bits of positive floats are ordered as the
/// floats are, and in whole numbers the compiler compares several at once.
class Peaks {
  public:
    void take(const float* samples, std::size_t count) {
        std::size_t n = 0;
        for (; n + kLanes <= count; n += kLanes)
            takeSome(samples + n, kLanes);
        takeSome(samples + n, count - n);
    }
    [[nodiscard]] std::uint32_t word() const {
        const auto side = [this](std::size_t first) {
            std::int32_t most = 0;
            for (std::size_t lane = first; lane < kLanes; lane += Voice::kChannels)
                most = std::max(most, m_bits[lane]);
            float value = 0.0F;
            std::memcpy(&value, &most, sizeof value);
            return static_cast<std::uint32_t>(std::lround(std::fmin(value, 1.0F) * 32768.0F));
        };
        return side(0) | (side(1) << 16);
    }

  private:
    static constexpr std::size_t kLanes = 8;

    void takeSome(const float* samples, std::size_t count) {
        constexpr std::int32_t kWithoutSign = 0x7FFFFFFF;
        std::array<std::int32_t, kLanes> bits{};
        std::memcpy(bits.data(), samples, count * sizeof(float));
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            m_bits[lane] = std::max(m_bits[lane], bits[lane] & kWithoutSign);
    }

    std::array<std::int32_t, kLanes> m_bits{};
};

} // namespace

Voice::Voice(std::uint32_t rate, Semaphore& events) : m_rate(rate), m_signal(events) {}

std::size_t Voice::write(const float* samples, std::size_t frames) {
    const std::size_t room = m_ring.capacity() - m_ring.readable();
    return m_ring.write(samples, std::min(room / kChannels, frames) * kChannels) / kChannels;
}

std::size_t Voice::writeSilence(std::size_t frames) {
    const std::size_t room = (m_ring.capacity() - m_ring.readable()) / kChannels;
    const std::size_t count = std::min(room, frames) * kChannels;
    m_silentTo.store(m_ring.written() + count);
    return m_ring.pass(count) / kChannels;
}

void Voice::waitForSpace() {
    m_decoderWaits.store(true);
    if (m_ring.readable() > lowMark())
        m_space.wait();
    m_decoderWaits.store(false);
}

bool Voice::isFull() const {
    return m_keptMs.load() != 0 && m_ring.readable() > kept();
}

std::size_t Voice::kept() const {
    const std::size_t keptMs = m_keptMs.load();
    return keptMs == 0 ? m_ring.capacity() : std::size_t{m_rate} * keptMs / 1000 * kChannels;
}

std::size_t Voice::lowMark() const {
    return kept() * (m_isUnheard.load() ? kUnheardLowPercent : kLowPercent) / 100;
}

std::size_t Voice::refillFrames() const {
    return m_keptMs.load() != 0 ? kept() / kChannels / 2 : std::size_t{m_rate} * kRefillMs / 1000;
}

void Voice::catchUpAt(std::uint64_t frame) {
    m_isCatchingUp.store(true);
    restartAt(frame);
}

bool Voice::isWaitingToCatchUp(std::size_t frames) {
    if (!m_isCatchingUp.load())
        return false;
    if (m_ring.readable() < frames * kChannels)
        return true;
    m_isCatchingUp.store(false);
    return false;
}

void Voice::restartAt(std::uint64_t frame) {
    const std::uint64_t written = m_ring.written();
    m_skipTo.store(written);
    m_base.store(static_cast<std::int64_t>(frame) - static_cast<std::int64_t>(written / kChannels));
    m_hasEnded.store(false);
    m_sourceEnded.store(false);
}

std::uint64_t Voice::writtenFrame() const {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(m_ring.written() / kChannels) +
                                      m_base.load());
}

void Voice::setVolume(float value) {
    const bool sounds = m_mode.load() == Mode::Playing;
    m_gain.set(value, sounds ? m_rate * kDeclickMs / 1000 : 0);
}

void Voice::slideVolume(float value, std::uint32_t milliseconds) {
    m_gain.slide(value, static_cast<std::uint32_t>(std::uint64_t{m_rate} * milliseconds / 1000));
}

std::uint64_t Voice::heardFrame() const {
    const std::uint64_t ring = std::max(m_ring.consumed(), m_skipTo.load()) / kChannels;
    return static_cast<std::uint64_t>(
        std::max<std::int64_t>(0, static_cast<std::int64_t>(ring) + m_base.load()));
}

std::uint32_t Voice::level() const {
    const std::uint32_t a = m_peak.load();
    const std::uint32_t b = m_lastPeak.load();
    return std::max(a & 0xFFFF, b & 0xFFFF) | (std::max(a >> 16, b >> 16) << 16);
}

std::uint32_t Voice::missingPercent() const {
    if (!m_isStalled.load())
        return 0;
    const std::size_t wanted = refillFrames();
    const std::size_t there = std::min(bufferedFrames(), wanted);
    return static_cast<std::uint32_t>(100 - there * 100 / wanted);
}

void Voice::raise(std::uint32_t events) {
    if (events == 0)
        return;
    m_events.fetch_or(events);
    m_signal.post();
}

bool Voice::isWaitingForRefill() {
    if (!m_isStalled.load())
        return false;
    const std::size_t wanted = refillFrames();
    if (bufferedFrames() < wanted && !m_sourceEnded.load())
        return true;
    m_isStalled.store(false);
    raise(kResumed);
    return false;
}

bool Voice::render(float* out, std::size_t frames) {
    m_ring.skipTo(m_skipTo.load());
    m_gain.takeCommand();
    if (m_mode.load() != Mode::Playing || m_hasEnded.load() || isWaitingToCatchUp(frames) ||
        isWaitingForRefill()) {
        m_lastPeak.store(m_peak.exchange(0));
        askForMore();
        return false;
    }
    const bool isLast = m_sourceEnded.load(); // before the ring is read: nothing can be missed
    const std::size_t mixed = mix(out, frames);

    std::uint32_t events = 0;
    if (mixed < frames && isLast) {
        m_hasEnded.store(true);
        events |= kEnded;
    } else if (mixed < frames) {
        m_isStalled.store(true);
        events |= kStalled;
    }
    std::uint64_t due = m_tagFrame.load();
    if (due != kNever && (heardFrame() >= due || (events & kEnded) != 0) &&
        m_tagFrame.compare_exchange_strong(due, kNever))
        events |= kTagDue;
    if (m_gain.takeSlideEnd())
        events |= kSlideEnded;
    raise(events);
    askForMore();
    return mixed > 0;
}

bool Voice::isThin(std::size_t frames) const {
    return m_mode.load() == Mode::Playing && bufferedFrames() < frames && !m_isStalled.load() &&
           !m_sourceEnded.load();
}

void Voice::askForMore() {
    if (m_ring.readable() <= lowMark() && m_decoderWaits.exchange(false))
        m_space.post();
}

void Voice::addRamp(const float* samples, std::size_t count, float* out) {
    for (std::size_t n = 0; n + 1 < count; n += kChannels) {
        const float gain = m_gain.next();
        out[n] += samples[n] * gain;
        out[n + 1] += samples[n + 1] * gain;
    }
}

/// What was not decoded is not read either.
std::size_t Voice::passSilence(std::size_t frames) {
    const std::uint64_t at = m_ring.consumed();
    const std::uint64_t end = std::min(m_silentTo.load(), at + frames * kChannels);
    if (end <= at)
        return 0;
    m_ring.skipTo(end);
    const std::size_t passed = static_cast<std::size_t>(m_ring.consumed() - at) / kChannels;
    for (std::size_t n = 0; n < passed && !m_gain.isSteady(); ++n)
        static_cast<void>(m_gain.next());
    return passed;
}

std::size_t Voice::mix(float* out, std::size_t frames) {
    Peaks peaks;
    const bool isSpectrumWanted = m_spectrum.isWanted();
    const auto add = [&](const float* samples, std::size_t count) {
        if (isSpectrumWanted)
            m_spectrum.take(samples, count);
        peaks.take(samples, count);
        const float gain = m_gain.gain();
        if (!m_gain.isSteady())
            addRamp(samples, count, out);
        else if (gain != 0.0F)
            for (std::size_t n = 0; n < count; ++n)
                out[n] += samples[n] * gain;
        out += count;
    };
    const std::size_t silent = passSilence(frames);
    out += silent * kChannels;
    const std::size_t mixed =
        silent + m_ring.consume((frames - silent) * kChannels, add) / kChannels;
    m_lastPeak.store(m_peak.exchange(peaks.word()));
    return mixed;
}

} // namespace BASS
