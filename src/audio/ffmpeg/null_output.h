#pragma once

#include "audio/ffmpeg/output.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace BASS {

/// Plays to nowhere at the pace of the steady clock: where there is no sound device, where none is
/// wanted, and in tests. Deadlines are absolute, so a late wake-up is made good and the pace holds
/// over hours. The environment variable WAVELARK_NULL_SPEED (a factor above 0, 20 for example) lets
/// it run faster or slower than real time, for soak tests.
class NullOutput final : public Output {
  public:
    NullOutput(Mixer& mixer, std::uint32_t rate);
    ~NullOutput() override;

  private:
    void run();

    Mixer& m_mixer;
    const std::uint32_t m_rate;
    std::mutex m_mutex; ///< guards m_isStopping
    std::condition_variable m_stop;
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace BASS
