#include "audio/bass/bass_effects.h"

#include "audio/bass/bass_stream.h"

#include <algorithm>

namespace BASS {

BassEffects::BassEffects(int rate, DWORD channels) : m_channels(channels), m_chain(rate) {}

void BassEffects::process(float* samples, std::size_t count) {
    if (m_channels == 2)
        m_chain.process(samples, count / 2);
    else if (m_channels == 1)
        processMono(samples, count);
}

/// The chain knows two sides: the one is given to both.
void BassEffects::processMono(float* samples, std::size_t count) {
    while (count > 0) {
        const std::size_t part = std::min(count, m_stereo.size() / 2);
        for (std::size_t n = 0; n < part; ++n)
            m_stereo[2 * n] = m_stereo[2 * n + 1] = samples[n];
        m_chain.process(m_stereo.data(), part);
        for (std::size_t n = 0; n < part; ++n)
            samples[n] = m_stereo[2 * n];
        samples += part;
        count -= part;
    }
}

void BASS_CALL onBassDsp(DWORD /*dsp*/, DWORD /*channel*/, void* buffer, DWORD length, void* user) {
    const auto stream = bassStreams().find(user);
    if (stream == nullptr)
        return;
    if (const CallbackGate::Pass pass(stream->gate); pass)
        stream->effects->process(static_cast<float*>(buffer), length / sizeof(float));
}

} // namespace BASS
