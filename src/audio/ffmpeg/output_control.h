#pragma once

#include "audio/ffmpeg/capture_input.h"
#include "audio/ffmpeg/output.h"
#include "audio/ffmpeg/sdl_output.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace BASS {

class Mixer;

/// Keeps the mixer heard: opens the chosen device, falls back to the clock where none opens, brings
/// the sound back when a device went away and another is there, and lets the device rest while
/// there is nothing to hear.
///
/// *Thread*: any; a thread of its own opens, closes and watches devices. *Owner*: the library.
/// *Life*: open(), any number of times, close().
class OutputControl {
  public:
    static constexpr int kDefault = -1;
    static constexpr int kNoSound = 0;

    /// onLost: a device has gone, called on the control's thread. restAfter: without a stream, or
    /// with none that is not muted, the device is closed after so long: it keeps sound servers and
    /// hardware awake.
    OutputControl(Mixer& mixer,
                  std::function<void()> onLost,
                  std::chrono::seconds restAfter = std::chrono::seconds(10));
    ~OutputControl();
    OutputControl(const OutputControl&) = delete;
    OutputControl& operator=(const OutputControl&) = delete;

    /// There is something to hear: a device that is closed, for nothing was heard for a while or
    /// ever, is opened without waiting for it. One that has been open plays out its silence before.
    void wake();
    /// What was muted may be heard now: the same, for a device that was closed because of it.
    void unmute();
    /// device: kDefault, kNoSound, or a place in devices(). False where there is no such device.
    /// Waits for the sound system, and while something plays for the device, which may take some
    /// 50 ms.
    bool open(int device, std::uint32_t rate);
    void close();
    [[nodiscard]] bool isOpen() const { return m_isOpen.load(); }
    [[nodiscard]] int device() const { return m_device.load(); }

    struct Device {
        std::string name;
        std::string driver;
        bool isDefault = false;
    };
    /// Number 0 is "No sound", 1 the system's default, then the devices by name.
    [[nodiscard]] std::vector<Device> devices();

    // recording devices: here, where the driver is kept
    /// Number 0 is the system's default. Empty: there is none.
    [[nodiscard]] std::vector<Device> recordingDevices();
    /// device: kDefault, or a place in recordingDevices(). Null where it does not open.
    std::unique_ptr<CaptureInput> openRecordingDevice(int device, int rate);

  private:
    void run();
    void tend();
    void reopen();
    void returnToChosen();
    void waitLonger();
    void startSdl();
    void openChosen();
    void closeOutput();
    std::unique_ptr<SdlOutput> openDevice();
    std::unique_ptr<SdlOutput> openNamed(const std::string& name);
    void use(std::unique_ptr<SdlOutput> output);

    Mixer& m_mixer;
    const std::function<void()> m_onLost;
    const std::chrono::seconds m_restAfter;
    std::atomic<bool> m_isOpen{false};
    std::atomic<int> m_device{kDefault};

    std::mutex m_deviceMutex; ///< guards the device and its names; held while it opens or closes
    std::unique_ptr<SdlAudio> m_sdl;
    std::unique_ptr<Output> m_output;
    SdlOutput* m_sdlOutput = nullptr; ///< m_output, where it is one
    std::string m_name;               ///< of the chosen device; empty: the default
    bool m_isSubstitute = false;      ///< another one plays, for the chosen one was not there
    std::map<std::string, std::string> m_refusals; ///< why a device did not open, by its name
    std::uint32_t m_rate = 44100;
    std::chrono::seconds m_retryAfter{0}; ///< doubles with each vain attempt
    std::chrono::steady_clock::time_point m_nextTry;

    std::mutex m_mutex; ///< guards what follows; never held for long
    std::condition_variable m_changed;
    std::chrono::steady_clock::time_point m_lastUse;
    bool m_isAsleep = false; ///< the output is closed until wake()
    bool m_isMuted = false;  ///< the clock stands in for the device until wake()
    bool m_isWoken = false;
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace BASS
