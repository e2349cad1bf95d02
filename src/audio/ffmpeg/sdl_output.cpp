#include "audio/ffmpeg/sdl_output.h"

#include "audio/ffmpeg/mixer.h"
#include "base/log.h"

#include <QLibrary>

#include <SDL.h>

#include <cstdlib>
#include <cstring>

namespace BASS {
namespace {

/// 46 ms at 44.1 kHz: a slider is felt at once, and a sound server wakes us half as often as with
/// the usual 1024.
constexpr std::uint16_t kBlockFrames = 2048;
/// SDL's own way to ask for another period; it looks at it only where the program names none.
constexpr const char* kPeriodVariable = "SDL_AUDIO_SAMPLES";

void renderBlock(void* mixer, Uint8* out, int bytes) {
    static_cast<Mixer*>(mixer)->render(reinterpret_cast<float*>(out),
                                       static_cast<std::size_t>(bytes) /
                                           (sizeof(float) * Voice::kChannels));
}

void ignoreAlsaMessage(const char*, int, const char*, int, const char*, ...) {}

/// ALSA writes a page to stderr each time a device does not open; the one line of the log is
/// enough. Where there is no ALSA, nothing is done.
void silenceAlsa() {
    using Handler = void (*)(const char*, int, const char*, int, const char*, ...);
    using SetHandler = int(Handler);
    constexpr int kAlsaVersion = 2;
    const auto setHandler = reinterpret_cast<SetHandler*>(
        QLibrary::resolve(QStringLiteral("asound"), kAlsaVersion, "snd_lib_error_set_handler"));
    if (setHandler != nullptr)
        setHandler(ignoreAlsaMessage);
}

} // namespace

std::unique_ptr<SdlOutput>
SdlOutput::open(Mixer& mixer, std::uint32_t rate, const std::string& name) {
    SDL_AudioSpec wanted{};
    wanted.freq = static_cast<int>(rate);
    wanted.format = AUDIO_F32SYS;
    wanted.channels = Voice::kChannels;
    wanted.samples = std::getenv(kPeriodVariable) == nullptr ? kBlockFrames : 0;
    wanted.callback = renderBlock;
    wanted.userdata = &mixer;
    SDL_AudioSpec got{};
    const SDL_AudioDeviceID device =
        SDL_OpenAudioDevice(name.empty() ? nullptr : name.c_str(), 0, &wanted, &got, 0);
    if (device == 0)
        return nullptr;
    return std::unique_ptr<SdlOutput>(new SdlOutput(device));
}

SdlOutput::~SdlOutput() {
    SDL_CloseAudioDevice(m_device);
}

void SdlOutput::start() {
    SDL_PauseAudioDevice(m_device, 0);
}

bool SdlOutput::isLost() const {
    return SDL_GetAudioDeviceStatus(m_device) == SDL_AUDIO_STOPPED;
}

SdlAudio::SdlAudio() {
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Wavelark");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_ROLE, "music");
    silenceAlsa();
    m_isUp = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
    if (!m_isUp)
        qCWarning(lcAudio, "no audio driver reason=%s", SDL_GetError());
}

SdlAudio::~SdlAudio() {
    if (m_isUp)
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

std::string SdlAudio::driver() const {
    const char* const name = m_isUp ? SDL_GetCurrentAudioDriver() : nullptr;
    return name != nullptr ? name : "";
}

std::vector<SdlDevice> SdlAudio::devices(Direction direction) const {
    const int isCapture = direction == Direction::In ? 1 : 0;
    std::vector<SdlDevice> result;
    if (!m_isUp)
        return result;
    char* defaultName = nullptr;
    SDL_AudioSpec spec{};
    if (SDL_GetDefaultAudioInfo(&defaultName, &spec, isCapture) != 0)
        defaultName = nullptr;
    const int count = SDL_GetNumAudioDevices(isCapture);
    for (int n = 0; n < count; ++n) {
        const char* const name = SDL_GetAudioDeviceName(n, isCapture);
        if (name == nullptr)
            continue;
        result.push_back({name, defaultName != nullptr && std::strcmp(name, defaultName) == 0});
    }
    SDL_free(defaultName);
    return result;
}

std::string SdlAudio::error() {
    return SDL_GetError();
}

void SdlAudio::leaveThread() {
    SDL_TLSCleanup();
}

bool SdlAudio::isDummyAsked() {
    const char* const driver = std::getenv("SDL_AUDIODRIVER");
    return driver != nullptr && std::strcmp(driver, "dummy") == 0;
}

} // namespace BASS
