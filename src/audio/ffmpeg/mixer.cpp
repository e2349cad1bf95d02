#include "audio/ffmpeg/mixer.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace BASS {

bool Mixer::add(Voice& voice) {
    const std::lock_guard lock(m_mutex);
    std::atomic<Voice*>* place = nullptr;
    for (auto& slot : m_voices) {
        if (slot.load() == &voice)
            return true;
        if (slot.load() == nullptr && place == nullptr)
            place = &slot;
    }
    if (place == nullptr)
        return false;
    place->store(&voice);
    m_count.fetch_add(1);
    return true;
}

void Mixer::remove(Voice& voice) {
    const std::lock_guard lock(m_mutex);
    for (auto& slot : m_voices) {
        if (slot.load() != &voice)
            continue;
        slot.store(nullptr);
        m_count.fetch_sub(1);
    }
    // a pass that began before the place was cleared may still use the voice
    const std::uint64_t pass = m_pass.load();
    while ((pass & 1) != 0 && m_pass.load() == pass)
        std::this_thread::sleep_for(std::chrono::microseconds(100));
}

void Mixer::render(float* out, std::size_t frames) {
    m_pass.fetch_add(1);
    const std::size_t samples = frames * Voice::kChannels;
    std::fill(out, out + samples, 0.0F);
    bool isSilent = true;
    bool isSounding = false;
    bool isThin = false;
    for (auto& slot : m_voices) {
        Voice* const voice = slot.load();
        if (voice == nullptr)
            continue;
        isSounding = voice->render(out, frames) || isSounding;
        isSilent = isSilent && (voice->isMuted() || voice->hasEnded());
        isThin = isThin || voice->isThin(frames);
    }
    isSilent = isSilent || m_globalVolume.load() == 0;
    const bool wasSilent = m_isSilent.exchange(isSilent);
    m_isSounding.store(isSounding);
    m_isThin.store(isThin);
    m_pass.fetch_add(1);

    const float goal = static_cast<float>(m_globalVolume.load()) / 10000.0F;
    if (isSilent && wasSilent && goal == m_lastGain) {
        if (goal == 0.0F)
            std::fill(out, out + samples, 0.0F);
        return;
    }
    const float step = (goal - m_lastGain) / static_cast<float>(frames);
    if (step != 0.0F) {
        float gain = m_lastGain;
        for (std::size_t n = 0; n < samples; n += Voice::kChannels) {
            gain += step;
            out[n] *= gain;
            out[n + 1] *= gain;
        }
    } else if (goal != 1.0F) {
        for (std::size_t n = 0; n < samples; ++n)
            out[n] *= goal;
    }
    m_lastGain = goal;
    // a stream of the wrong kind may decode to many times full scale: spare ears and speakers
    for (std::size_t n = 0; n < samples; ++n)
        out[n] = std::clamp(out[n], -1.0F, 1.0F);
}

} // namespace BASS
