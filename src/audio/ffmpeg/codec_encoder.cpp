#include "audio/ffmpeg/codec_encoder.h"

#include "audio/bass_defs.h"
#include "audio/ffmpeg/av_handles.h"
#include "audio/ffmpeg/pcm_converter.h"
#include "base/log.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace BASS {
namespace {

using Mode = EncoderOptions::Mode;

constexpr int kIoBytes = 16384;
constexpr int kPageMicroseconds = 250'000;
constexpr int kFragmentMicroseconds = 250'000;
constexpr int kDefaultBitrate = 128'000;
/// What a WMA quality of 1 to 100 costs; the encoder knows bitrates only.
constexpr int kWmaLowest = 32'000;
constexpr int kWmaHighest = 192'000;

struct FreeMuxer {
    void operator()(AVFormatContext* p) const { avformat_free_context(p); }
};
struct FreeFifo {
    void operator()(AVAudioFifo* p) const { av_audio_fifo_free(p); }
};

struct Product {
    const char* codec;
    const char* container;
};

Product productOf(const CodecEncoder::Setup& setup) {
    switch (setup.kind) {
    case EncoderKind::Mp3:
        return {"libmp3lame", "mp3"};
    case EncoderKind::Vorbis:
        return {"libvorbis", "ogg"};
    case EncoderKind::Flac:
        return {"flac", setup.options.isOgg ? "ogg" : "flac"};
    case EncoderKind::Aac:
        return {"aac", setup.options.isMp4 ? "ipod" : "adts"};
    case EncoderKind::Wma:
        return {"wmav2", "asf"};
    }
    return {"", ""};
}

/// The rate itself, the next higher one that the codec has, or its highest.
int nearestRate(const AVCodec& codec, int wanted) {
    constexpr int kWmaMost = 48000;
    if (codec.id == AV_CODEC_ID_WMAV2)
        return std::min(wanted, kWmaMost);
    if (codec.supported_samplerates == nullptr)
        return wanted;
    int above = 0;
    int highest = 0;
    for (const int* rate = codec.supported_samplerates; *rate != 0; ++rate) {
        highest = std::max(highest, *rate);
        if (*rate >= wanted && (above == 0 || *rate < above))
            above = *rate;
    }
    return above != 0 ? above : highest;
}

AVSampleFormat sampleFormat(const CodecEncoder::Setup& setup, const AVCodec& codec) {
    if (setup.kind == EncoderKind::Flac)
        return setup.bits > 16 ? AV_SAMPLE_FMT_S32 : AV_SAMPLE_FMT_S16;
    const AVSampleFormat* const first = codec.sample_fmts;
    for (const AVSampleFormat* format = first; format != nullptr && *format != -1; ++format)
        if (*format == AV_SAMPLE_FMT_FLTP)
            return *format;
    return first != nullptr ? *first : AV_SAMPLE_FMT_FLTP;
}

void setBitrate(const CodecEncoder::Setup& setup, AVCodecContext& codec) {
    const EncoderOptions& options = setup.options;
    const bool hasQuality = options.quality && options.mode == Mode::Variable;
    codec.bit_rate = options.bitrate > 0 ? options.bitrate : kDefaultBitrate;
    if (setup.kind == EncoderKind::Wma && hasQuality) {
        const double share = (*options.quality - 1.0) / 99.0;
        codec.bit_rate = std::lround(kWmaLowest + share * (kWmaHighest - kWmaLowest));
    } else if (setup.kind == EncoderKind::Mp3 || setup.kind == EncoderKind::Vorbis) {
        const double fallback = setup.kind == EncoderKind::Vorbis ? 5.0 : 4.0;
        const bool isVariable = hasQuality || options.mode == Mode::Variable ||
                                (setup.kind == EncoderKind::Vorbis && options.bitrate == 0);
        if (isVariable) {
            codec.flags |= AV_CODEC_FLAG_QSCALE;
            codec.global_quality =
                static_cast<int>(std::lround(options.quality.value_or(fallback) * FF_QP2LAMBDA));
            codec.bit_rate = 0;
        }
        codec.rc_min_rate = options.minBitrate;
        codec.rc_max_rate = options.maxBitrate;
        if (setup.kind == EncoderKind::Mp3 && options.mode == Mode::Average)
            av_opt_set_int(codec.priv_data, "abr", 1, 0);
    }
    if (setup.kind == EncoderKind::Flac && options.compression >= 0)
        codec.compression_level = options.compression;
}

} // namespace

struct CodecEncoder::State {
    State(const Setup& what, Write to) : setup(what), write(std::move(to)) {}

    const Setup setup;
    const Write write;
    std::int64_t place = 0;
    // freed from the last to the first
    AvMemoryIo io;
    std::unique_ptr<AVFormatContext, FreeMuxer> muxer;
    AvCodec codec;
    std::unique_ptr<AVAudioFifo, FreeFifo> fifo;
    std::unique_ptr<PcmConverter> converter;
    AvPacket packet{av_packet_alloc()};
    AvFrame frame{av_frame_alloc()};
    std::int64_t encoded = 0; ///< frames
    bool hasHeader = false;

    static int writeBytes(void* self, std::uint8_t* data, int size);
    static std::int64_t seekBytes(void* self, std::int64_t offset, int whence);
    bool openCodec(const AVCodec& encoder, bool isHeaderGlobal);
    bool openMuxer(const char* container);
    void setMuxerOptions();
    bool buffer(const float* samples, std::size_t frames);
    bool addTail();
    bool drainFifo(bool isLast);
    bool encodeFrame(const AVFrame* in);
    std::int64_t length = 0; ///< of the file so far
};

int CodecEncoder::State::writeBytes(void* self, std::uint8_t* data, int size) {
    auto* const state = static_cast<State*>(self);
    state->write(data, static_cast<std::size_t>(size), state->place);
    state->place += size;
    state->length = std::max(state->length, state->place);
    return size;
}

std::int64_t CodecEncoder::State::seekBytes(void* self, std::int64_t offset, int whence) {
    auto* const state = static_cast<State*>(self);
    if ((whence & AVSEEK_SIZE) != 0)
        return state->length;
    if ((whence & ~AVSEEK_FORCE) == SEEK_CUR)
        offset += state->place;
    else if ((whence & ~AVSEEK_FORCE) == SEEK_END)
        offset += state->length;
    if (offset < 0 || offset > state->length)
        return AVERROR(EINVAL);
    state->place = offset;
    return offset;
}

CodecEncoder::CodecEncoder(const Setup& setup, Write write)
    : m_state(std::make_unique<State>(setup, std::move(write))) {}

CodecEncoder::~CodecEncoder() = default;

int CodecEncoder::open() {
    State& s = *m_state;
    const Product product = productOf(s.setup);
    const AVCodec* const encoder = avcodec_find_encoder_by_name(product.codec);
    const AVOutputFormat* const container = av_guess_format(product.container, nullptr, nullptr);
    if (encoder == nullptr || container == nullptr) {
        qCWarning(lcAudio, "encoder is not there codec=%s", product.codec);
        return BASS_ERROR_CODEC;
    }
    if (!s.openCodec(*encoder, (container->flags & AVFMT_GLOBALHEADER) != 0) ||
        !s.openMuxer(product.container)) {
        qCWarning(lcAudio, "encoder does not start codec=%s", product.codec);
        return BASS_ERROR_NOTAVAIL;
    }
    return BASS_OK;
}

bool CodecEncoder::State::openCodec(const AVCodec& encoder, bool isHeaderGlobal) {
    codec.reset(avcodec_alloc_context3(&encoder));
    codec->sample_rate = nearestRate(encoder, setup.rate);
    codec->time_base = {1, codec->sample_rate};
    codec->sample_fmt = sampleFormat(setup, encoder);
    if (setup.kind == EncoderKind::Flac)
        codec->bits_per_raw_sample = setup.bits > 16 ? 24 : 16;
    av_channel_layout_default(&codec->ch_layout, setup.channels);
    setBitrate(setup, *codec);
    if (isHeaderGlobal)
        codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    codec->thread_count = 1;
    if (avcodec_open2(codec.get(), &encoder, nullptr) < 0)
        return false;
    fifo.reset(av_audio_fifo_alloc(codec->sample_fmt, setup.channels, 2 * codec->frame_size));
    converter = std::make_unique<PcmConverter>(
        PcmConverter::Input{setup.inputRate, setup.inputChannels},
        PcmConverter::Output{codec->sample_rate, setup.channels, codec->sample_fmt});
    return fifo != nullptr && converter->isValid();
}

bool CodecEncoder::State::openMuxer(const char* container) {
    AVFormatContext* context = nullptr;
    if (avformat_alloc_output_context2(&context, nullptr, container, nullptr) < 0)
        return false;
    muxer.reset(context);
    auto* const memory = static_cast<unsigned char*>(av_malloc(kIoBytes));
    io.reset(avio_alloc_context(
        memory, kIoBytes, 1, this, nullptr, &writeBytes, setup.canRewrite ? &seekBytes : nullptr));
    muxer->pb = io.get();
    AVStream* const stream = avformat_new_stream(muxer.get(), nullptr);
    if (stream == nullptr || avcodec_parameters_from_context(stream->codecpar, codec.get()) < 0)
        return false;
    stream->time_base = codec->time_base;
    setMuxerOptions();
    hasHeader = avformat_write_header(muxer.get(), nullptr) >= 0;
    avio_flush(io.get());
    return hasHeader;
}

void CodecEncoder::State::setMuxerOptions() {
    muxer->flags |= AVFMT_FLAG_BITEXACT; // no "encoded by" texts: tags are the recorder's
    muxer->flush_packets = 0;            // after each batch, see encode()
    void* const options = muxer->priv_data;
    if (options == nullptr)
        return;
    av_opt_set_int(options, "page_duration", kPageMicroseconds, 0);
    av_opt_set_int(options, "id3v2_version", 0, 0);
    if (setup.options.isMp4) {
        av_opt_set(options, "movflags", "empty_moov+default_base_moof+delay_moov", 0);
        av_opt_set_int(options, "frag_duration", kFragmentMicroseconds, 0);
    }
}

bool CodecEncoder::State::buffer(const float* samples, std::size_t frames) {
    const bool isLast = samples == nullptr;
    const int got = converter->convert(samples, frames);
    if (got < 0 || (got > 0 && av_audio_fifo_write(fifo.get(), converter->planes(), got) < got))
        return false;
    return (!isLast || addTail()) && drainFifo(isLast);
}

/// WMA overlaps its blocks: without silence behind it the last one would not be heard.
bool CodecEncoder::State::addTail() {
    if (setup.kind != EncoderKind::Wma)
        return true;
    const std::vector<float> silence(static_cast<std::size_t>(codec->frame_size) * 2);
    PcmConverter maker({codec->sample_rate, 2},
                       {codec->sample_rate, setup.channels, codec->sample_fmt});
    const int got = maker.convert(silence.data(), static_cast<std::size_t>(codec->frame_size));
    return got > 0 && av_audio_fifo_write(fifo.get(), maker.planes(), got) == got;
}

bool CodecEncoder::State::drainFifo(bool isLast) {
    constexpr int kAnySize = 4096;
    const int size = codec->frame_size > 0 ? codec->frame_size : kAnySize;
    for (;;) {
        const int waiting = av_audio_fifo_size(fifo.get());
        if (waiting < size && !(isLast && waiting > 0))
            return true;
        AVFrame& f = *frame;
        f.nb_samples = std::min(size, waiting);
        f.format = codec->sample_fmt;
        f.sample_rate = codec->sample_rate;
        f.pts = encoded;
        if (av_channel_layout_copy(&f.ch_layout, &codec->ch_layout) < 0 ||
            av_frame_get_buffer(&f, 0) < 0)
            return false;
        av_audio_fifo_read(fifo.get(), reinterpret_cast<void**>(f.extended_data), f.nb_samples);
        encoded += f.nb_samples;
        const bool isDone = encodeFrame(&f);
        av_frame_unref(&f);
        if (!isDone)
            return false;
    }
}

bool CodecEncoder::State::encodeFrame(const AVFrame* in) {
    if (avcodec_send_frame(codec.get(), in) < 0)
        return false;
    for (;;) {
        const int result = avcodec_receive_packet(codec.get(), packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return true;
        if (result < 0)
            return false;
        // the last "packet" of FLAC has no audio, only the final header, which Ogg cannot take back
        const bool isEmpty =
            packet->size == 0 && (setup.kind != EncoderKind::Flac || setup.options.isOgg);
        av_packet_rescale_ts(packet.get(), codec->time_base, muxer->streams[0]->time_base);
        packet->stream_index = 0;
        const int written = isEmpty ? 0 : av_write_frame(muxer.get(), packet.get());
        av_packet_unref(packet.get());
        if (written < 0)
            return false;
    }
}

bool CodecEncoder::encode(const float* samples, std::size_t frames) {
    State& s = *m_state;
    const bool isDone = s.buffer(samples, frames);
    avio_flush(s.io.get());
    return isDone;
}

bool CodecEncoder::finish() {
    State& s = *m_state;
    if (!s.hasHeader)
        return false;
    const bool isDone = s.buffer(nullptr, 0) && s.encodeFrame(nullptr);
    s.hasHeader = false;
    const bool isEnded = av_write_trailer(s.muxer.get()) >= 0;
    avio_flush(s.io.get());
    return isDone && isEnded;
}

} // namespace BASS
