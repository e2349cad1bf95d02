#include "audio/ffmpeg/stereo_converter.h"

#include "base/log.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
}

#include <algorithm>

namespace BASS {
namespace {

constexpr int kOutChannels = 2;

struct FreeSwr {
    void operator()(SwrContext* p) const { swr_free(&p); }
};

/// The shape of decoded frames; the resampler is made anew when it changes.
struct Shape {
    int rate = 0;
    int format = -1;
    int channels = 0;
    std::uint64_t mask = 0;
    bool operator==(const Shape& o) const {
        return rate == o.rate && format == o.format && channels == o.channels && mask == o.mask;
    }
};

Shape shapeOf(const AVFrame& frame) {
    const auto& layout = frame.ch_layout;
    return {frame.sample_rate,
            frame.format,
            layout.nb_channels,
            layout.order == AV_CHANNEL_ORDER_NATIVE ? layout.u.mask : 0};
}

/// Mono where both are the same.
void interleave(const float* left, const float* right, std::size_t frames, float* out) {
    for (std::size_t n = 0; n < frames; ++n) {
        out[2 * n] = left[n];
        out[2 * n + 1] = right[n];
    }
}

} // namespace

struct StereoConverter::State {
    explicit State(int rate) : outputRate(rate) {}

    const int outputRate;
    Shape shape;
    bool isPlain = false; ///< planes of floats at the right rate: only to be interleaved
    std::unique_ptr<SwrContext, FreeSwr> swr;
    int swrChannels = kOutChannels; ///< mono is doubled here: the resampler would lower it by 3 dB
    std::vector<float> converted;

    void follow(const Shape& now);
    void makeResampler();
    void takePlain(const AVFrame& frame, std::vector<float>& out) const;
    void resample(const AVFrame* in, std::vector<float>& out);
};

StereoConverter::StereoConverter(int outputRate) : m_state(std::make_unique<State>(outputRate)) {}

StereoConverter::~StereoConverter() = default;

bool StereoConverter::isReady() const {
    return m_state->isPlain || m_state->swr;
}

int StereoConverter::sampleRate() const {
    return isReady() ? m_state->shape.rate : 0;
}

int StereoConverter::channels() const {
    return isReady() ? m_state->shape.channels : 0;
}

void StereoConverter::reset() {
    m_state->swr.reset();
    m_state->isPlain = false;
    m_state->shape = {};
}

void StereoConverter::convert(const AVFrame& frame, std::vector<float>& out) {
    State& s = *m_state;
    if (const Shape now = shapeOf(frame); !(now == s.shape)) {
        drain(out);
        s.follow(now);
    }
    if (s.isPlain)
        s.takePlain(frame, out);
    else
        s.resample(&frame, out);
}

void StereoConverter::drain(std::vector<float>& out) {
    m_state->resample(nullptr, out);
}

void StereoConverter::State::follow(const Shape& now) {
    shape = now;
    const bool isStereo =
        shape.channels == kOutChannels && (shape.mask == 0 || shape.mask == AV_CH_LAYOUT_STEREO);
    isPlain = shape.rate == outputRate && shape.format == AV_SAMPLE_FMT_FLTP &&
              (shape.channels == 1 || isStereo);
    swr.reset();
    if (!isPlain)
        makeResampler();
}

void StereoConverter::State::makeResampler() {
    AVChannelLayout in{};
    if (shape.mask != 0)
        av_channel_layout_from_mask(&in, shape.mask);
    else
        av_channel_layout_default(&in, shape.channels);
    swrChannels = std::min(shape.channels, kOutChannels);
    AVChannelLayout out{};
    av_channel_layout_default(&out, swrChannels);
    SwrContext* context = nullptr;
    const int result = swr_alloc_set_opts2(&context,
                                           &out,
                                           AV_SAMPLE_FMT_FLT,
                                           outputRate,
                                           &in,
                                           static_cast<AVSampleFormat>(shape.format),
                                           shape.rate,
                                           0,
                                           nullptr);
    swr.reset(context);
    if (result < 0 || swr_init(swr.get()) < 0) {
        qCWarning(lcAudio, "no resampler rate=%d channels=%d", shape.rate, shape.channels);
        swr.reset();
    }
}

void StereoConverter::State::takePlain(const AVFrame& frame, std::vector<float>& out) const {
    const auto frames = static_cast<std::size_t>(frame.nb_samples);
    const std::size_t from = out.size();
    out.resize(from + frames * kOutChannels);
    const auto* const left = reinterpret_cast<const float*>(frame.extended_data[0]);
    const bool isMono = shape.channels == 1;
    const auto* const right =
        isMono ? left : reinterpret_cast<const float*>(frame.extended_data[1]);
    interleave(left, right, frames, out.data() + from);
}

void StereoConverter::State::resample(const AVFrame* in, std::vector<float>& out) {
    if (!swr)
        return;
    const int inFrames = in != nullptr ? in->nb_samples : 0;
    const int most = swr_get_out_samples(swr.get(), inFrames);
    if (most <= 0)
        return;
    converted.resize(static_cast<std::size_t>(most) * static_cast<std::size_t>(swrChannels));
    auto* to = reinterpret_cast<std::uint8_t*>(converted.data());
    auto** const planes = in != nullptr ? in->extended_data : nullptr;
    const int got =
        swr_convert(swr.get(), &to, most, const_cast<const std::uint8_t**>(planes), inFrames);
    if (got <= 0)
        return;
    const auto frames = static_cast<std::size_t>(got);
    const float* const samples = converted.data();
    if (swrChannels == kOutChannels) {
        out.insert(out.end(), samples, samples + frames * kOutChannels);
        return;
    }
    const std::size_t from = out.size();
    out.resize(from + frames * kOutChannels);
    interleave(samples, samples, frames, out.data() + from);
}

} // namespace BASS
