#pragma once

#include "audio/bass/bass_function.h"
#include "audio/effects/effect_chain.h"

#include <array>
#include <cstddef>

namespace BASS {

/// Our own effects inside the closed library: what a DSP function of one channel does. The library
/// hands it floats as BASS_CONFIG_FLOATDSP says, of as many sides as the channel has; of more than
/// two nothing is changed.
/// Thread: process() on the library's mixing thread, the chain's settings from any. Owner: the
/// stream's record.
class BassEffects {
  public:
    /// rate in Hz
    BassEffects(int rate, DWORD channels);

    [[nodiscard]] EffectChain& chain() { return m_chain; }
    void process(float* samples, std::size_t count);

  private:
    void processMono(float* samples, std::size_t count);

    const DWORD m_channels;
    EffectChain m_chain;
    std::array<float, 1024> m_stereo{};
};

/// What the library calls; `user` is a token of bassStreams().
void BASS_CALL onBassDsp(DWORD dsp, DWORD channel, void* buffer, DWORD length, void* user);

} // namespace BASS
