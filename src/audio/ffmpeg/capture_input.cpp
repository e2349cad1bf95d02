#include "audio/ffmpeg/capture_input.h"

#include "base/log.h"

#include <SDL.h>

#include <array>
#include <cstring>

namespace BASS {
namespace {

constexpr std::uint16_t kBlockFrames = 1024;
constexpr std::uint8_t kChannels = 2;
constexpr std::uint32_t kFrameBytes = kChannels * sizeof(float);
constexpr std::size_t kSecondsKept = 4;
constexpr std::size_t kHeaderBytes = 44;

/// RIFF WAVE, IEEE floats; sizes of all ones say that nobody knows the end.
std::array<std::uint8_t, kHeaderBytes> wavHeader(std::uint32_t rate) {
    constexpr std::uint32_t kEndless = 0xFFFFFFFF;
    constexpr std::uint32_t kFormatBytes = 16;
    constexpr std::uint32_t kFloat = 3;
    constexpr std::uint32_t kFloatBits = 32;
    std::array<std::uint8_t, kHeaderBytes> header{};
    std::size_t at = 0;
    const auto text = [&](const char* name) {
        std::memcpy(header.data() + at, name, 4);
        at += 4;
    };
    const auto number = [&](std::uint32_t value, int bytes) {
        for (int n = 0; n < bytes; ++n)
            header[at++] = static_cast<std::uint8_t>(value >> (8 * n));
    };
    text("RIFF");
    number(kEndless, 4);
    text("WAVE");
    text("fmt ");
    number(kFormatBytes, 4);
    number(kFloat, 2);
    number(kChannels, 2);
    number(rate, 4);
    number(rate * kFrameBytes, 4);
    number(kFrameBytes, 2);
    number(kFloatBits, 2);
    text("data");
    number(kEndless, 4);
    return header;
}

} // namespace

CaptureInput::CaptureInput(int rate)
    : m_fifo(kHeaderBytes + kSecondsKept * static_cast<std::size_t>(rate) * kFrameBytes) {
    const auto header = wavHeader(static_cast<std::uint32_t>(rate));
    m_fifo.push(header.data(), header.size());
}

std::unique_ptr<CaptureInput> CaptureInput::open(const std::string& name, int rate) {
    std::unique_ptr<CaptureInput> input(new CaptureInput(rate));
    SDL_AudioSpec wanted{};
    wanted.freq = rate;
    wanted.format = AUDIO_F32LSB;
    wanted.channels = kChannels;
    wanted.samples = kBlockFrames;
    wanted.callback = &CaptureInput::take;
    wanted.userdata = input.get();
    SDL_AudioSpec got{};
    input->m_device =
        SDL_OpenAudioDevice(name.empty() ? nullptr : name.c_str(), 1, &wanted, &got, 0);
    if (input->m_device == 0) {
        qCWarning(lcAudio,
                  "recording device does not open device=%s reason=%s",
                  name.c_str(),
                  SDL_GetError());
        return nullptr;
    }
    SDL_PauseAudioDevice(input->m_device, 0);
    return input;
}

CaptureInput::~CaptureInput() {
    if (m_device != 0)
        SDL_CloseAudioDevice(m_device); // waits for the callback
}

void CaptureInput::take(void* self, std::uint8_t* data, int bytes) {
    static_cast<CaptureInput*>(self)->m_fifo.push(data, static_cast<std::size_t>(bytes));
}

} // namespace BASS
