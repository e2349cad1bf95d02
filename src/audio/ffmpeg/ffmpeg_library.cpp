#include "audio/ffmpeg/ffmpeg_library.h"

#include "audio/ffmpeg/avio_source.h"
#include "audio/ffmpeg/url_text.h"
#include "base/log.h"

extern "C" {
#include <libavutil/avutil.h>
#include <libavutil/log.h>
}

#include <algorithm>

// Session, devices and configuration; streams are in ffmpeg_library_streams.cpp, channels in
// ffmpeg_library_channels.cpp.

namespace BASS {
namespace {

constexpr DWORD kCurrentDevice = ~DWORD{0};
constexpr DWORD kDefaultDeviceNumber = 1;

/// A thread that waits for a name server cannot be woken.
constexpr std::chrono::seconds kLongestNameLookup{15};

thread_local int lastError = BASS_OK;

} // namespace

FfmpegLibrary::FfmpegLibrary()
    : m_description(std::string("embedded FFmpeg ") + av_version_info()),
      m_output(m_mixer,
               [this] {
                   for (const Channel& channel : channels())
                       channel->deviceLost();
               }),
      m_options{{BASS_CONFIG_GVOL_STREAM, 10000},
                {BASS_CONFIG_NET_TIMEOUT, 5000},
                {BASS_CONFIG_NET_BUFFER, 5000},
                {BASS_CONFIG_NET_PREBUF, 75},
                {BASS_CONFIG_NET_READTIMEOUT, 0}},
      m_userAgent("Wavelark/2.15.901"), m_net(std::make_unique<NetEngine>()),
      m_dispatcher([this] { runDispatcher(); }) {
    av_log_set_level(AV_LOG_FATAL); // damaged frames are everyday business of a stream
}

FfmpegLibrary::~FfmpegLibrary() {
    Free();
    m_isStopping.store(true);
    m_signal.post();
    m_dispatcher.join();
    AvioSource::waitForAll(kLongestNameLookup);
}

bool FfmpegLibrary::fail(int error) {
    lastError = error;
    return false;
}

bool FfmpegLibrary::succeed() {
    lastError = BASS_OK;
    return true;
}

int FfmpegLibrary::ErrorGetCode() const {
    return lastError;
}

bool FfmpegLibrary::Init(int device, DWORD freq, DWORD /*flags*/) {
    if (m_output.isOpen() && m_output.device() == device)
        return fail(BASS_ERROR_ALREADY);
    constexpr DWORD kLowest = 8000;
    constexpr DWORD kHighest = 192000;
    if (freq < kLowest || freq > kHighest)
        return fail(BASS_ERROR_FORMAT);
    // streams that play keep their rate when only the device changes
    const DWORD rate = m_output.isOpen() ? static_cast<DWORD>(m_rate.load()) : freq;
    if (!m_output.open(device, rate))
        return fail(BASS_ERROR_DEVICE);
    m_rate.store(static_cast<int>(rate));
    return succeed();
}

bool FfmpegLibrary::Free() {
    const bool wasOpen = m_output.isOpen();
    for (const Channel& channel : channels())
        freeChannel(channel->handle());
    m_output.close();
    return wasOpen ? succeed() : fail(BASS_ERROR_INIT);
}

bool FfmpegLibrary::SetDevice(DWORD device) {
    if (!m_output.isOpen())
        return fail(BASS_ERROR_INIT);
    if (device == kCurrentDevice || device == GetDevice())
        return succeed();
    const bool exists = device < m_output.devices().size();
    return fail(exists ? BASS_ERROR_INIT : BASS_ERROR_DEVICE);
}

DWORD FfmpegLibrary::GetDevice() const {
    if (!m_output.isOpen()) {
        fail(BASS_ERROR_INIT);
        return kCurrentDevice;
    }
    const int device = m_output.device();
    return device == OutputControl::kDefault ? kDefaultDeviceNumber : static_cast<DWORD>(device);
}

bool FfmpegLibrary::GetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) {
    const auto list = m_output.devices();
    if (device >= list.size() || info == nullptr)
        return fail(BASS_ERROR_DEVICE);
    const bool isOpen = m_output.isOpen() && GetDevice() == device;
    const std::lock_guard lock(m_mutex);
    m_deviceName = list[device].name;
    m_deviceDriver = list[device].driver;
    info->name = m_deviceName.c_str();
    info->driver = m_deviceDriver.c_str();
    info->flags = BASS_DEVICE_ENABLED | (list[device].isDefault ? BASS_DEVICE_DEFAULT : 0) |
                  (isOpen ? BASS_DEVICE_INIT : 0);
    return succeed();
}

bool FfmpegLibrary::RecordGetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) {
    const auto list = m_output.recordingDevices();
    if (device >= list.size() || info == nullptr)
        return fail(BASS_ERROR_DEVICE);
    const std::lock_guard lock(m_mutex);
    m_recordDeviceName = list[device].name;
    m_recordDeviceDriver = list[device].driver;
    info->name = m_recordDeviceName.c_str();
    info->driver = m_recordDeviceDriver.c_str();
    info->flags = BASS_DEVICE_ENABLED | (list[device].isDefault ? BASS_DEVICE_DEFAULT : 0);
    return succeed();
}

bool FfmpegLibrary::SetConfig(DWORD option, DWORD value) {
    constexpr DWORD kFullVolume = 10000;
    if (option == BASS_CONFIG_GVOL_STREAM) {
        value = std::min(value, kFullVolume);
        m_mixer.setGlobalVolume(value);
        if (value > 0)
            m_output.unmute();
        for (const Channel& channel : channels())
            channel->voice().wakeDecoder(); // what was muted may be heard now
    }
    const std::lock_guard lock(m_mutex);
    m_options[option] = value;
    return succeed();
}

DWORD FfmpegLibrary::GetConfig(DWORD option) const {
    const std::lock_guard lock(m_mutex);
    const auto place = m_options.find(option);
    if (place == m_options.end()) {
        fail(BASS_ERROR_ILLPARAM);
        return ~DWORD{0};
    }
    succeed();
    return place->second;
}

bool FfmpegLibrary::SetConfigPtr(DWORD option, const void* value) {
    const bool isWide = (option & BASS_UNICODE) != 0;
    const std::string text = value != nullptr ? utf8Text(value, isWide) : std::string();
    const std::lock_guard lock(m_mutex);
    switch (option & ~BASS_UNICODE) {
    case BASS_CONFIG_NET_AGENT:
        m_userAgent = text.empty() ? "Wavelark/2.15.901" : text;
        return succeed();
    case BASS_CONFIG_NET_PROXY:
        m_proxy = text;
        return succeed();
    default:
        return fail(BASS_ERROR_ILLPARAM);
    }
}

HPLUGIN FfmpegLibrary::PluginLoad(const char* file) {
    if (file == nullptr)
        return fail(BASS_ERROR_ILLPARAM) ? 1 : 0;
    succeed();
    return 1; // every format that the engine asks for is built in
}

FfmpegLibrary::Channel FfmpegLibrary::find(DWORD handle) const {
    const std::lock_guard lock(m_mutex);
    const auto place = m_channels.find(handle);
    if (place == m_channels.end()) {
        fail(BASS_ERROR_HANDLE);
        return nullptr;
    }
    succeed();
    return place->second;
}

std::vector<FfmpegLibrary::Channel> FfmpegLibrary::channels() const {
    const std::lock_guard lock(m_mutex);
    std::vector<Channel> result;
    for (const auto& [handle, channel] : m_channels)
        result.push_back(channel);
    return result;
}

/// The channel stays in the table until no callback of it can run any more, so that a second call
/// waits just as the first.
bool FfmpegLibrary::freeChannel(DWORD handle) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    channel->close();
    endEncoders(*channel);
    const std::lock_guard lock(m_mutex);
    m_channels.erase(handle);
    return succeed();
}

void FfmpegLibrary::runDispatcher() {
    for (;;) {
        m_signal.wait();
        if (m_isStopping.load())
            return;
        sweepEncoders();
        for (const Channel& channel : channels()) {
            channel->pcmTap().settle();
            if (channel->dispatch()) {
                channel->syncs().fire(BASS_SYNC_FREE, 0);
                freeChannel(channel->handle());
            }
        }
    }
}

} // namespace BASS
