#include "audio/ffmpeg/output_control.h"

#include "audio/ffmpeg/mixer.h"
#include "audio/ffmpeg/null_output.h"
#include "base/log.h"

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

/// How often a lost device is noticed and a missing one looked for. SDL's events would need its
/// event loop to be pumped; asking once a second costs nothing measurable.
constexpr std::chrono::seconds kWatchEvery{1};
/// Pauses between attempts to find a device where there is none.
constexpr std::chrono::seconds kRetryFirst{4};
constexpr std::chrono::seconds kRetryAtMost{60};

} // namespace

OutputControl::OutputControl(Mixer& mixer,
                             std::function<void()> onLost,
                             std::chrono::seconds restAfter)
    : m_mixer(mixer), m_onLost(std::move(onLost)), m_restAfter(restAfter) {}

OutputControl::~OutputControl() {
    close();
}

bool OutputControl::open(int device, std::uint32_t rate) {
    std::string name;
    if (device > 1) {
        const auto list = devices();
        if (static_cast<std::size_t>(device) >= list.size())
            return false;
        name = list[static_cast<std::size_t>(device)].name;
    } else if (device < kDefault) {
        return false;
    }
    close();
    {
        const std::lock_guard lock(m_deviceMutex);
        m_device.store(device);
        m_name = name;
        m_rate = rate;
        m_isAsleep = m_mixer.isEmpty(); // no thread yet
        if (!m_isAsleep)
            openChosen();
        else if (device != kNoSound)
            startSdl();
    }
    m_lastUse = std::chrono::steady_clock::now();
    m_isWoken = m_isMuted = m_isStopping = false;
    m_thread = std::thread([this] { run(); });
    m_isOpen.store(true);
    return true;
}

void OutputControl::close() {
    m_isOpen.store(false);
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
    const std::lock_guard lock(m_deviceMutex);
    closeOutput();
}

void OutputControl::wake() {
    {
        const std::lock_guard lock(m_mutex);
        m_lastUse = std::chrono::steady_clock::now();
        m_isWoken = m_isWoken || m_isAsleep || m_isMuted;
    }
    m_changed.notify_all();
}

void OutputControl::unmute() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isMuted)
            return;
        m_isWoken = true;
    }
    m_changed.notify_all();
}

void OutputControl::run() {
    const auto isRested = [this] { // under the lock
        return std::chrono::steady_clock::now() - m_lastUse >= m_restAfter && m_mixer.isEmpty();
    };
    auto lastHeard = std::chrono::steady_clock::now();
    const auto isLongMuted = [this, &lastHeard] {
        const auto now = std::chrono::steady_clock::now();
        if (m_sdlOutput == nullptr || !m_mixer.isSilent())
            lastHeard = now;
        return now - lastHeard >= m_restAfter;
    };
    std::unique_lock lock(m_mutex);
    while (!m_isStopping) {
        const auto isCalled = [this] { return m_isStopping || m_isWoken; };
        if (m_isAsleep)
            m_changed.wait(lock, isCalled);
        else
            m_changed.wait_for(lock, m_sdlOutput != nullptr ? kWatchEvery : kRetryFirst, isCalled);
        if (m_isStopping)
            return;
        // what was turned up just before it counted as muted has called nobody
        const bool isHeardAgain = m_isMuted && !m_mixer.isSilent();
        if (std::exchange(m_isWoken, false) || isHeardAgain) {
            m_isAsleep = m_isMuted = false;
            lock.unlock();
            const std::lock_guard device(m_deviceMutex);
            openChosen();
        } else if (isRested()) {
            m_isAsleep = true;
            lock.unlock();
            const std::lock_guard device(m_deviceMutex);
            closeOutput();
        } else if (m_isMuted) {
            continue;
        } else if (isLongMuted()) {
            m_isMuted = true;
            lock.unlock();
            const std::lock_guard device(m_deviceMutex);
            closeOutput();
            m_output = std::make_unique<NullOutput>(m_mixer, m_rate);
        } else {
            lock.unlock();
            tend();
        }
        lock.lock();
    }
}

void OutputControl::tend() {
    bool isLost = false;
    {
        const std::lock_guard lock(m_deviceMutex);
        if (m_device.load() == kNoSound || !m_sdl || !m_sdl->isUp())
            return;
        if (m_sdlOutput != nullptr && !m_sdlOutput->isLost()) {
            returnToChosen();
            return;
        }
        isLost = m_sdlOutput != nullptr;
        if (isLost)
            qCWarning(lcAudio,
                      "output device lost device=%s",
                      m_isSubstitute ? "the default" : m_name.c_str());
        reopen();
    }
    if (isLost)
        m_onLost();
}

/// The chosen device, or any. Until there is one, the clock keeps the streams going.
void OutputControl::reopen() {
    if (m_sdlOutput == nullptr && std::chrono::steady_clock::now() < m_nextTry)
        return;
    auto output = openDevice();
    if (output || m_sdlOutput != nullptr)
        use(std::move(output));
    else
        waitLonger(); // the clock runs already
}

void OutputControl::waitLonger() {
    m_retryAfter = std::clamp(2 * m_retryAfter, kRetryFirst, kRetryAtMost);
    m_nextTry = std::chrono::steady_clock::now() + m_retryAfter;
}

std::unique_ptr<SdlOutput> OutputControl::openDevice() {
    auto output = openNamed(m_name);
    m_isSubstitute = !output && !m_name.empty();
    if (m_isSubstitute) // better another device than silence
        output = openNamed({});
    return output;
}

/// It is tried for as long as the program runs: a reason is told once, until it changes.
std::unique_ptr<SdlOutput> OutputControl::openNamed(const std::string& name) {
    auto output = SdlOutput::open(m_mixer, m_rate, name);
    std::string reason = output ? std::string() : SdlAudio::error();
    std::string& told = m_refusals[name];
    if (!reason.empty() && reason != told)
        qCWarning(
            lcAudio, "output does not open device=%s reason=%s", name.c_str(), reason.c_str());
    told = std::move(reason);
    return output;
}

/// A headset that is plugged in again takes over from what stood in for it.
void OutputControl::returnToChosen() {
    if (!m_isSubstitute || std::chrono::steady_clock::now() < m_nextTry)
        return;
    const std::vector<SdlDevice> there = m_sdl->devices();
    const bool isBack = std::any_of(there.begin(), there.end(), [this](const SdlDevice& device) {
        return device.name == m_name;
    });
    if (!isBack)
        return;
    auto output = openNamed(m_name);
    if (!output) {
        waitLonger();
        return;
    }
    qCInfo(lcAudio, "output device is back device=%s", m_name.c_str());
    m_isSubstitute = false;
    use(std::move(output));
}

/// Changes over to a device that is open and waits, or to the clock: never two at a time.
void OutputControl::use(std::unique_ptr<SdlOutput> output) {
    closeOutput();
    if (output) {
        m_retryAfter = {};
        output->start();
        m_sdlOutput = output.get();
        m_output = std::move(output);
        return;
    }
    qCInfo(lcAudio, "output=none, paced by the clock");
    m_output = std::make_unique<NullOutput>(m_mixer, m_rate);
    waitLonger();
}

void OutputControl::startSdl() {
    if (!m_sdl && !SdlAudio::isDummyAsked())
        m_sdl = std::make_unique<SdlAudio>();
}

void OutputControl::closeOutput() {
    m_sdlOutput = nullptr;
    m_output.reset();
}

void OutputControl::openChosen() {
    closeOutput(); // a device may refuse to be opened twice
    if (m_device.load() != kNoSound)
        startSdl();
    const bool hasSdl = m_device.load() != kNoSound && m_sdl && m_sdl->isUp();
    use(hasSdl ? openDevice() : nullptr);
}

std::vector<OutputControl::Device> OutputControl::devices() {
    const std::lock_guard lock(m_deviceMutex);
    startSdl();
    std::vector<Device> result{{"No sound", "", false}};
    if (!m_sdl || !m_sdl->isUp())
        return result;
    const std::string driver = m_sdl->driver();
    result.push_back({"Default", driver, true});
    for (const SdlDevice& device : m_sdl->devices())
        result.push_back({device.name, driver, device.isDefault});
    return result;
}

std::vector<OutputControl::Device> OutputControl::recordingDevices() {
    const std::lock_guard lock(m_deviceMutex);
    startSdl();
    if (!m_sdl || !m_sdl->isUp())
        return {};
    const std::vector<SdlDevice> found = m_sdl->devices(SdlAudio::Direction::In);
    if (found.empty())
        return {};
    std::vector<Device> result{{"Default", m_sdl->driver(), true}};
    for (const SdlDevice& device : found)
        result.push_back({device.name, m_sdl->driver(), device.isDefault});
    return result;
}

std::unique_ptr<CaptureInput> OutputControl::openRecordingDevice(int device, int rate) {
    std::string name;
    if (device > 0) {
        const auto list = recordingDevices();
        if (static_cast<std::size_t>(device) >= list.size())
            return nullptr;
        name = list[static_cast<std::size_t>(device)].name;
    }
    const std::lock_guard lock(m_deviceMutex);
    startSdl();
    auto input = m_sdl && m_sdl->isUp() ? CaptureInput::open(name, rate) : nullptr;
    SdlAudio::leaveThread(); // it is a connect's
    return input;
}

} // namespace BASS
