#include "audio/ffmpeg/pcm_converter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/mem.h>
#include <libavutil/samplefmt.h>
#include <libswresample/swresample.h>
}

#include <vector>

namespace BASS {

struct PcmConverter::State {
    ~State() {
        swr_free(&swr);
        freePlanes();
    }
    void freePlanes() {
        if (planes != nullptr)
            av_freep(&planes[0]);
        av_freep(&planes);
    }
    bool grow(int frames) {
        if (frames <= room)
            return true;
        freePlanes();
        room = frames;
        return av_samples_alloc_array_and_samples(
                   &planes, nullptr, output.channels, frames, format(), 0) >= 0;
    }
    [[nodiscard]] AVSampleFormat format() const {
        return static_cast<AVSampleFormat>(output.sampleFormat);
    }
    /// Half of each side: what was mono comes out as it was, and nothing is clipped.
    const float* mixDown(const float* samples, std::size_t frames) {
        mono.resize(frames);
        for (std::size_t n = 0; n < frames; ++n)
            mono[n] = 0.5F * (samples[2 * n] + samples[2 * n + 1]);
        return mono.data();
    }

    Input input{};
    Output output{};
    SwrContext* swr = nullptr;
    bool isValid = false;
    int room = 0;
    std::uint8_t** planes = nullptr;
    std::vector<float> mono;
};

PcmConverter::PcmConverter(const Input& input, const Output& output)
    : m_state(std::make_unique<State>()) {
    State& s = *m_state;
    s.input = input;
    s.output = output;
    const int inChannels = output.channels == 1 ? 1 : input.channels;
    AVChannelLayout in{};
    AVChannelLayout out{};
    av_channel_layout_default(&in, inChannels);
    av_channel_layout_default(&out, output.channels);
    s.isValid = swr_alloc_set_opts2(&s.swr,
                                    &out,
                                    s.format(),
                                    output.rate,
                                    &in,
                                    AV_SAMPLE_FMT_FLT,
                                    input.rate,
                                    0,
                                    nullptr) >= 0 &&
                swr_init(s.swr) >= 0;
}

PcmConverter::~PcmConverter() = default;

bool PcmConverter::isValid() const {
    return m_state->isValid;
}

void** PcmConverter::planes() const {
    return reinterpret_cast<void**>(m_state->planes);
}

int PcmConverter::convert(const float* samples, std::size_t frames) {
    State& s = *m_state;
    const int count = static_cast<int>(frames);
    const int most = swr_get_out_samples(s.swr, count);
    if (most < 0 || !s.grow(most + 1))
        return -1;
    if (samples != nullptr && s.output.channels == 1 && s.input.channels == 2)
        samples = s.mixDown(samples, frames);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(samples);
    const bool isLast = samples == nullptr;
    return swr_convert(s.swr,
                       s.planes,
                       s.room,
                       isLast ? nullptr : const_cast<const std::uint8_t**>(&bytes),
                       count);
}

} // namespace BASS
