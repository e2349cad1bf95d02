#include "audio/ffmpeg/output_control.h"

#include "audio/ffmpeg/mixer.h"
#include "audio/ffmpeg/null_output.h"
#include "base/log.h"

#include <chrono>

namespace BASS {
namespace {

/// How often a lost device is noticed and a missing one looked for. SDL's events would need its
/// event loop to be pumped; asking once a second costs nothing measurable.
constexpr std::chrono::seconds kWatchEvery{1};

} // namespace

OutputControl::OutputControl(Mixer& mixer, std::function<void()> onLost)
    : m_mixer(mixer), m_onLost(std::move(onLost)) {}

OutputControl::~OutputControl() {
    close();
}

void OutputControl::startSdl() {
    if (!m_sdl && !SdlAudio::isDummyAsked())
        m_sdl = std::make_unique<SdlAudio>();
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
    const std::lock_guard lock(m_mutex);
    m_device = device;
    m_name = name;
    m_rate = rate;
    openChosen();
    m_isOpen = true;
    m_isStopping = false;
    if (device != kNoSound && m_sdl)
        m_watcher = std::thread([this] { run(); });
    return true;
}

void OutputControl::openChosen() {
    m_sdlOutput = nullptr;
    m_output.reset();
    if (m_device != kNoSound) {
        startSdl();
        if (m_sdl && m_sdl->isUp()) {
            auto output = SdlOutput::open(m_mixer, m_rate, m_name);
            if (!output && !m_name.empty()) // better another device than silence
                output = SdlOutput::open(m_mixer, m_rate, {});
            m_sdlOutput = output.get();
            m_output = std::move(output);
        }
    }
    if (!m_output) {
        qCInfo(lcAudio, "output=none, paced by the clock");
        m_output = std::make_unique<NullOutput>(m_mixer, m_rate);
    }
}

void OutputControl::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_changed.notify_all();
    if (m_watcher.joinable())
        m_watcher.join();
    const std::lock_guard lock(m_mutex);
    m_sdlOutput = nullptr;
    m_output.reset();
    m_isOpen = false;
}

bool OutputControl::isOpen() const {
    const std::lock_guard lock(m_mutex);
    return m_isOpen;
}

int OutputControl::device() const {
    const std::lock_guard lock(m_mutex);
    return m_device;
}

void OutputControl::run() {
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, kWatchEvery, [this] { return m_isStopping; })) {
        if (m_sdlOutput != nullptr && !m_sdlOutput->isLost())
            continue;
        if (m_sdlOutput != nullptr) {
            qCWarning(lcAudio, "output device lost device=%s", m_name.c_str());
            lock.unlock();
            m_onLost();
            lock.lock();
            if (m_isStopping)
                return;
        }
        reopen();
    }
}

/// Under the lock. The null output keeps the streams going while there is no device.
bool OutputControl::reopen() {
    auto output = SdlOutput::open(m_mixer, m_rate, m_name);
    if (!output && !m_name.empty())
        output = SdlOutput::open(m_mixer, m_rate, {});
    if (!output) {
        if (m_sdlOutput != nullptr)
            openChosen();
        return false;
    }
    m_output.reset(); // one clock at a time
    m_sdlOutput = output.get();
    m_output = std::move(output);
    return true;
}

std::vector<OutputControl::Device> OutputControl::devices() {
    const std::lock_guard lock(m_mutex);
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

} // namespace BASS
