#include "audio/ffmpeg/null_output.h"

#include "audio/ffmpeg/mixer.h"

#include <chrono>
#include <cstdlib>
#include <vector>

namespace BASS {
namespace {

constexpr std::size_t kBlockFrames = 1024;
/// Blocks at a time while something plays, which nobody hears; what begins to play begins at once.
constexpr std::uint64_t kSoundingBlocks = 8;
/// Blocks at a time while all is muted: what is late by half a second is not missed. Less than what
/// a voice keeps, or it would run dry in one step.
constexpr std::uint64_t kSilentBlocks = 23;
static_assert(kSilentBlocks * kBlockFrames < Voice::kCapacityFrames);
/// After a longer pause of the whole machine the clock starts anew instead of racing.
constexpr std::chrono::seconds kMaxLag{2};

double speedFactor() {
    const char* const text = std::getenv("WAVELARK_NULL_SPEED");
    const double factor = text != nullptr ? std::strtod(text, nullptr) : 1.0;
    return factor > 0.0 ? factor : 1.0;
}

} // namespace

NullOutput::NullOutput(Mixer& mixer, std::uint32_t rate)
    : m_mixer(mixer), m_rate(rate), m_thread([this] { run(); }) {}

NullOutput::~NullOutput() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_stop.notify_all();
    m_thread.join();
}

void NullOutput::run() {
    using Clock = std::chrono::steady_clock;
    std::vector<float> block(kBlockFrames * Voice::kChannels);
    const std::chrono::duration<double> period(static_cast<double>(kBlockFrames) / m_rate /
                                               speedFactor());
    auto begin = Clock::now();
    std::uint64_t blocks = 0;
    std::unique_lock lock(m_mutex);
    for (;;) {
        const std::uint64_t step = m_mixer.isSilent()     ? kSilentBlocks
                                   : m_mixer.isSounding() ? kSoundingBlocks
                                                          : 1;
        // never ahead of the clock, or a thin buffer would run dry
        const auto due = begin + std::chrono::duration_cast<Clock::duration>(
                                     period * static_cast<double>(blocks + step - 1));
        if (m_stop.wait_until(lock, due, [this] { return m_isStopping; }))
            return;
        lock.unlock();
        bool isThin = false;
        for (std::uint64_t n = 0; n < step && !isThin; ++n, ++blocks) {
            m_mixer.render(block.data(), kBlockFrames);
            isThin = m_mixer.isThin();
        }
        // what was decoded anew in the middle of a step does not reach to its end
        if (isThin || Clock::now() - due > kMaxLag) {
            begin = Clock::now();
            blocks = 0;
        }
        lock.lock();
    }
}

} // namespace BASS
