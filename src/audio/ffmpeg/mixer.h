#pragma once

#include "audio/ffmpeg/voice.h"

#include <array>
#include <atomic>
#include <mutex>

namespace BASS {

/// Adds the voices that play; normally one, two during a change-over.
///
/// *Thread*: render() on the output's thread, the rest on any thread. *Owner*: the library; it
/// outlives every output and voice.
class Mixer {
  public:
    static constexpr std::size_t kMaxVoices = 64;

    /// False when every place is taken.
    bool add(Voice& voice);
    /// When it returns, the output does not touch the voice any more (waits for one block at most).
    void remove(Voice& voice);
    [[nodiscard]] bool isEmpty() const { return m_count.load() == 0; }

    /// In the last block every voice was muted, and no slide was under way.
    [[nodiscard]] bool isSilent() const { return m_isSilent.load(); }
    /// In the last block a voice played.
    [[nodiscard]] bool isSounding() const { return m_isSounding.load(); }
    /// The last block has left a voice with less than another one, and more is to come.
    [[nodiscard]] bool isThin() const { return m_isThin.load(); }

    /// 0 to 10000, linear.
    void setGlobalVolume(std::uint32_t value) { m_globalVolume.store(value); }
    [[nodiscard]] std::uint32_t globalVolume() const { return m_globalVolume.load(); }

    /// Fills `out` with stereo frames. No lock, no allocation, no log.
    void render(float* out, std::size_t frames);

  private:
    std::mutex m_mutex; ///< one add or remove at a time
    std::array<std::atomic<Voice*>, kMaxVoices> m_voices{};
    std::atomic<std::size_t> m_count{0};
    std::atomic<std::uint64_t> m_pass{0}; ///< odd while render() runs
    std::atomic<std::uint32_t> m_globalVolume{10000};
    std::atomic<bool> m_isSilent{false};
    std::atomic<bool> m_isSounding{false};
    std::atomic<bool> m_isThin{false};
    float m_lastGain = 1.0F; ///< render() only
};

} // namespace BASS
