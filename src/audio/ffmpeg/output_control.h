#pragma once

#include "audio/ffmpeg/output.h"
#include "audio/ffmpeg/sdl_output.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace BASS {

class Mixer;

/// Keeps the mixer heard: opens the chosen device, falls back to the clock where none opens, and
/// brings the sound back when a device went away and another is there.
///
/// *Thread*: any; a thread of its own opens, closes and watches devices. *Owner*: the library.
/// *Life*: open(), any number of times, close().
class OutputControl {
  public:
    static constexpr int kDefault = -1;
    static constexpr int kNoSound = 0;

    /// onLost: a device has gone, called on the control's thread.
    OutputControl(Mixer& mixer, std::function<void()> onLost);
    ~OutputControl();
    OutputControl(const OutputControl&) = delete;
    OutputControl& operator=(const OutputControl&) = delete;

    /// device: kDefault, kNoSound, or a place in devices(). False where there is no such device.
    /// Waits for the device, which may take some 50 ms.
    bool open(int device, std::uint32_t rate);
    void close();
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] int device() const;

    struct Device {
        std::string name;
        std::string driver;
        bool isDefault = false;
    };
    /// Number 0 is "No sound", 1 the system's default, then the devices by name.
    [[nodiscard]] std::vector<Device> devices();

  private:
    void run();
    bool reopen();
    void watch();
    void startSdl();
    void openChosen();

    Mixer& m_mixer;
    const std::function<void()> m_onLost;

    mutable std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    std::unique_ptr<SdlAudio> m_sdl;
    std::unique_ptr<Output> m_output;
    SdlOutput* m_sdlOutput = nullptr; ///< m_output, where it is one
    std::string m_name;               ///< of the chosen device; empty: the default
    std::uint32_t m_rate = 44100;
    int m_device = kDefault;
    bool m_isOpen = false;
    bool m_isStopping = false;
    std::thread m_watcher;
};

} // namespace BASS
