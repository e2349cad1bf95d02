#pragma once

#include "audio/ffmpeg/output.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace BASS {

/// Plays through SDL: PulseAudio, PipeWire, ALSA, WASAPI and so on.
class SdlOutput final : public Output {
  public:
    /// name: empty for the system's default, which the stream then follows. Silent until start().
    /// Null where the device does not open; SdlAudio::error() says why.
    static std::unique_ptr<SdlOutput>
    open(Mixer& mixer, std::uint32_t rate, const std::string& name);
    ~SdlOutput() override;

    void start();
    /// The device is gone (unplugged, sound server ended).
    [[nodiscard]] bool isLost() const;

  private:
    explicit SdlOutput(std::uint32_t device) : m_device(device) {}

    std::uint32_t m_device;
};

struct SdlDevice {
    std::string name;
    bool isDefault = false;
};

/// SDL's audio part, while it lives: started once, without signal handlers.
class SdlAudio {
  public:
    SdlAudio();
    ~SdlAudio();
    SdlAudio(const SdlAudio&) = delete;
    SdlAudio& operator=(const SdlAudio&) = delete;

    [[nodiscard]] bool isUp() const { return m_isUp; }
    [[nodiscard]] std::string driver() const;
    enum class Direction { Out = 0, In = 1 };
    [[nodiscard]] std::vector<SdlDevice> devices(Direction direction = Direction::Out) const;
    /// True where SDL would be the clock itself (its "dummy" driver), which it is not fit for.
    static bool isDummyAsked();
    /// Why the calling thread's last call failed.
    static std::string error();
    /// Frees what SDL keeps of the calling thread, which may end without SDL's knowing.
    static void leaveThread();

  private:
    bool m_isUp = false;
};

} // namespace BASS
