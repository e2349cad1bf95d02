#include "audio/ffmpeg/link_decoder.h"

#include "audio/ffmpeg/av_handles.h"
#include "audio/ffmpeg/held_packets.h"
#include "audio/ffmpeg/stereo_converter.h"
#include "audio/frame_header.h"
#include "base/log.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace BASS {
namespace {

constexpr int kIoBytes = 4096;
constexpr int kOutChannels = 2;
/// Bad packets in a row after which a stream is given up: about ten seconds of audio.
constexpr int kMaxBadInRow = 500;

const char* demuxerName(StreamFormat format) {
    switch (format) {
    case StreamFormat::Mpeg:
        return "mp3";
    case StreamFormat::Adts:
        return "aac";
    case StreamFormat::OggVorbis:
    case StreamFormat::OggOpus:
    case StreamFormat::OggFlac:
        return "ogg";
    case StreamFormat::Flac:
        return "flac";
    case StreamFormat::Mp4:
        return "mov";
    case StreamFormat::Wav:
        return "wav";
    case StreamFormat::Aiff:
        return "aiff";
    case StreamFormat::Asf:
        return "asf";
    case StreamFormat::None:
        break;
    }
    return nullptr;
}

} // namespace

struct LinkDecoder::State {
    State(int rate, ByteSource from) : outputRate(rate), source(std::move(from)), converter(rate) {}

    const int outputRate;
    ByteSource source;
    std::int64_t place = 0;
    bool isAborted = false;
    // freed from the last to the first
    AvMemoryIo io;
    AvInput format;
    AvCodec codec;
    AvPacket packet{av_packet_alloc()};
    AvFrame frame{av_frame_alloc()};
    AVStream* stream = nullptr;
    StereoConverter converter;
    ReservoirGate gate;
    bool isGated = false;
    int fadeLeft = 0; ///< frames of fade-in still to do
    int fadeFrames = 0;
    int badInRow = 0;
    bool isDraining = false;
    bool isSkipping = false;
    bool areCommentsTold = false;
    bool isRejoining = false; ///< the frames that the gate drops still take their time
    double frameLength = 0.0; ///< seconds of the last decoded frame
    double skippedRest = 0.0; ///< of a frame, not yet given out
    HeldPackets skipped;
    double dropBefore = -1.0; ///< seconds; after a jump
    Block block;
    Info info;
    double seconds = 0.0; ///< of decoded packets, with the next one the measured bitrate
    std::uint64_t packetBytes = 0;

    static int readBytes(void* self, std::uint8_t* out, int max);
    static std::int64_t seekBytes(void* self, std::int64_t offset, int whence);
    bool openFormat(const AVInputFormat* input, bool isProbed);
    bool openCodec();
    Step readPacket();
    Step decode(const AVPacket* in);
    Step skip();
    Step decodeSkipped();
    [[nodiscard]] double packetLength(const AVPacket& in) const;
    std::size_t outputFrames(double length);
    void startFade();
    void takeFrame();
    void describe();
    void fadeIn(std::size_t from);
    void measure(const AVPacket& in);
};

int LinkDecoder::State::readBytes(void* self, std::uint8_t* out, int max) {
    auto* const state = static_cast<State*>(self);
    const int got = state->source.read(out, max);
    if (got > 0) {
        state->place += got;
        return got;
    }
    state->isAborted = got == ByteSource::kAborted;
    return state->isAborted ? AVERROR_EXIT : AVERROR_EOF;
}

std::int64_t LinkDecoder::State::seekBytes(void* self, std::int64_t offset, int whence) {
    auto* const state = static_cast<State*>(self);
    if ((whence & AVSEEK_SIZE) != 0)
        return state->source.size > 0 ? state->source.size : -1;
    std::int64_t target = offset;
    const int from = whence & ~AVSEEK_FORCE;
    if (from == SEEK_CUR)
        target += state->place;
    else if (from == SEEK_END)
        target += state->source.size;
    const std::int64_t reached = state->source.seek(target);
    if (reached >= 0)
        state->place = reached;
    return reached;
}

LinkDecoder::LinkDecoder(int outputRate, ByteSource source)
    : m_state(std::make_unique<State>(outputRate, std::move(source))) {}

LinkDecoder::~LinkDecoder() = default;

LinkDecoder::Block& LinkDecoder::block() {
    return m_state->block;
}

LinkDecoder::Info LinkDecoder::info() const {
    return m_state->info;
}

bool LinkDecoder::open(StreamFormat format) {
    const char* const name = demuxerName(format);
    const AVInputFormat* const input = name != nullptr ? av_find_input_format(name) : nullptr;
    if (input == nullptr)
        return false;
    m_state->isGated = format == StreamFormat::Mpeg;
    return m_state->openFormat(input, m_state->source.seek != nullptr) && m_state->openCodec();
}

bool LinkDecoder::State::openFormat(const AVInputFormat* input, bool isProbed) {
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kIoBytes));
    io.reset(avio_alloc_context(
        buffer, kIoBytes, 0, this, &readBytes, nullptr, source.seek ? &seekBytes : nullptr));
    if (!source.seek)
        io->seekable = 0;
    AVFormatContext* context = avformat_alloc_context();
    context->pb = io.get();
    context->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_DISCARD_CORRUPT;
    if (!isProbed) { // a live stream is not looked at ahead: each read-ahead second is a later
                     // start
        context->flags |= AVFMT_FLAG_NOBUFFER;
        context->probesize = kIoBytes;
    }
    if (avformat_open_input(&context, nullptr, input, nullptr) < 0)
        return false; // has freed the context
    format.reset(context);
    if (isProbed && avformat_find_stream_info(format.get(), nullptr) < 0)
        return false;
    return true;
}

bool LinkDecoder::State::openCodec() {
    const AVCodec* decoder = nullptr;
    int index = av_find_best_stream(format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (index < 0 && format->nb_streams > 0 &&
        format->streams[0]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
        index = 0; // parameters come with the first packet
        decoder = avcodec_find_decoder(format->streams[0]->codecpar->codec_id);
    }
    if (index < 0 || decoder == nullptr)
        return false;
    stream = format->streams[index];
    for (unsigned n = 0; n < format->nb_streams; ++n)
        if (static_cast<int>(n) != index)
            format->streams[n]->discard = AVDISCARD_ALL;
    codec.reset(avcodec_alloc_context3(decoder));
    if (avcodec_parameters_to_context(codec.get(), stream->codecpar) < 0)
        return false;
    codec->thread_count = 1;
    codec->pkt_timebase = stream->time_base;
    return avcodec_open2(codec.get(), decoder, nullptr) >= 0;
}

LinkDecoder::Step LinkDecoder::step() {
    State& s = *m_state;
    s.block.samples.clear();
    s.block.silence = 0;
    s.block.hasPosition = false;
    return s.readPacket();
}

LinkDecoder::Step LinkDecoder::State::readPacket() {
    if (isDraining)
        return Step::End;
    if (!isSkipping && !skipped.isEmpty())
        return decodeSkipped();
    const int result = av_read_frame(format.get(), packet.get());
    if (isAborted)
        return Step::Aborted;
    if (result == AVERROR_EOF || (result < 0 && avio_feof(io.get()) != 0)) {
        isDraining = true;
        decode(nullptr);
        converter.drain(block.samples);
        return block.samples.empty() ? Step::End : Step::Audio;
    }
    if (result < 0)
        return ++badInRow > kMaxBadInRow ? Step::Broken : Step::Nothing;
    if (packet->stream_index != stream->index) {
        av_packet_unref(packet.get());
        return Step::Nothing;
    }
    const Step step = isSkipping && packetLength(*packet) > 0.0 ? skip() : decode(packet.get());
    av_packet_unref(packet.get());
    return step;
}

LinkDecoder::Step LinkDecoder::State::decode(const AVPacket* in) {
    auto verdict = ReservoirGate::Verdict::Play;
    if (in != nullptr) {
        measure(*in);
        block.hasPosition = in->pos >= 0;
        block.position = in->pos >= 0 ? static_cast<std::uint64_t>(in->pos) : 0;
        if (isGated)
            verdict = gate.judge(in->data, static_cast<std::size_t>(in->size));
    }
    bool isGood = avcodec_send_packet(codec.get(), in) >= 0;
    while (isGood && avcodec_receive_frame(codec.get(), frame.get()) >= 0) {
        badInRow = -1;
        frameLength = 1.0 * frame->nb_samples / frame->sample_rate;
        if (verdict == ReservoirGate::Verdict::PlayFirst && fadeFrames == 0)
            startFade();
        isRejoining = isRejoining && verdict == ReservoirGate::Verdict::Drop;
        if (verdict != ReservoirGate::Verdict::Drop)
            takeFrame();
        else if (isRejoining)
            block.samples.resize(block.samples.size() + outputFrames(frameLength) * kOutChannels);
        av_frame_unref(frame.get());
    }
    if (++badInRow > kMaxBadInRow)
        return Step::Broken;
    return block.samples.empty() ? Step::Nothing : Step::Audio;
}

void LinkDecoder::State::startFade() {
    constexpr int kFadesASecond = 100;
    fadeLeft = fadeFrames = outputRate / kFadesASecond;
}

void LinkDecoder::skip() {
    State& s = *m_state;
    if (s.converter.isReady() && s.skipped.isEmpty())
        s.isSkipping = true;
}

std::size_t LinkDecoder::rejoin(std::size_t frames) {
    State& s = *m_state;
    if (!std::exchange(s.isSkipping, false))
        return 0;
    avcodec_flush_buffers(s.codec.get());
    s.gate.reset();
    s.isRejoining = s.isGated;
    s.fadeLeft = s.fadeFrames = 0;
    if (!s.isGated)
        s.startFade();
    return s.skipped.reachBack(frames);
}

bool LinkDecoder::isCatchingUp() const {
    return !m_state->isSkipping && !m_state->skipped.isEmpty();
}

LinkDecoder::Step LinkDecoder::State::skip() {
    measure(*packet);
    block.hasPosition = packet->pos >= 0;
    block.position = block.hasPosition ? static_cast<std::uint64_t>(packet->pos) : 0;
    block.silence = outputFrames(packetLength(*packet));
    skipped.hold(*packet, block.silence, static_cast<std::size_t>(outputRate));
    return Step::Audio;
}

LinkDecoder::Step LinkDecoder::State::decodeSkipped() {
    const HeldPackets::Taken held = skipped.takeFirst();
    const Step step = decode(held.packet.get());
    if (held.isHeard)
        return step;
    block.samples.clear();
    return step == Step::Broken ? step : Step::Nothing;
}

/// Seconds; ADTS does not tell, but is the same all along.
double LinkDecoder::State::packetLength(const AVPacket& in) const {
    return in.duration > 0 ? static_cast<double>(in.duration) * av_q2d(stream->time_base)
                           : frameLength;
}

/// Of a length that is passed over without decoding, in seconds.
std::size_t LinkDecoder::State::outputFrames(double length) {
    skippedRest += length * outputRate;
    const double whole =
        std::floor(skippedRest + 1e-6); // a sum that should be whole may lack a hair
    skippedRest -= whole;
    return static_cast<std::size_t>(whole);
}

void LinkDecoder::State::takeFrame() {
    if (dropBefore >= 0.0 && frame->pts != AV_NOPTS_VALUE) {
        const double at = static_cast<double>(frame->pts) * av_q2d(stream->time_base);
        const double end = at + static_cast<double>(frame->nb_samples) / frame->sample_rate;
        if (end <= dropBefore)
            return;
        dropBefore = -1.0;
    }
    const std::size_t from = block.samples.size();
    converter.convert(*frame, block.samples);
    if (fadeLeft > 0)
        fadeIn(from);
    describe();
}

void LinkDecoder::State::describe() {
    if (!converter.isReady())
        return;
    if (info.sampleRate == converter.sampleRate() && info.channels == converter.channels())
        return;
    info.sampleRate = converter.sampleRate();
    info.channels = converter.channels();
    info.bits = codec->bits_per_raw_sample > 0 ? codec->bits_per_raw_sample
                                               : av_get_bits_per_sample(codec->codec_id);
    info.isFloat =
        codec->codec_id == AV_CODEC_ID_PCM_F32LE || codec->codec_id == AV_CODEC_ID_PCM_F64LE;
}

void LinkDecoder::State::fadeIn(std::size_t from) {
    for (std::size_t n = from; n + 1 < block.samples.size() && fadeLeft > 0; n += 2, --fadeLeft) {
        const float gain =
            static_cast<float>(fadeFrames - fadeLeft) / static_cast<float>(fadeFrames);
        block.samples[n] *= gain;
        block.samples[n + 1] *= gain;
    }
}

void LinkDecoder::State::measure(const AVPacket& in) {
    constexpr double kWindow = 30.0; // seconds after which older packets count half
    const auto size = static_cast<std::size_t>(in.size);
    double length = static_cast<double>(in.duration) * av_q2d(stream->time_base);
    if (isGated) {
        if (const auto header = parseMpegFrame(in.data, size)) {
            info.layer = header->layer;
            length = static_cast<double>(header->samples) / header->sampleRate;
        }
    }
    if (length <= 0.0)
        return;
    seconds += length;
    packetBytes += size;
    info.bitrate =
        static_cast<int>(std::lround(static_cast<double>(packetBytes) * 8.0 / 1000.0 / seconds));
    if (seconds > kWindow) {
        seconds /= 2.0;
        packetBytes /= 2;
    }
}

double LinkDecoder::duration() const {
    const State& s = *m_state;
    if (!s.format || !s.source.seek)
        return 0.0;
    if (s.format->duration > 0)
        return static_cast<double>(s.format->duration) / AV_TIME_BASE;
    return s.stream->duration > 0
               ? static_cast<double>(s.stream->duration) * av_q2d(s.stream->time_base)
               : 0.0;
}

std::string LinkDecoder::takeComments() {
    State& s = *m_state;
    const bool isUpdated = (s.format->event_flags & AVFMT_EVENT_FLAG_METADATA_UPDATED) != 0;
    if (s.areCommentsTold && !isUpdated)
        return {};
    s.areCommentsTold = true;
    s.format->event_flags &= ~AVFMT_EVENT_FLAG_METADATA_UPDATED;
    std::string result;
    for (const char* const name : {"artist", "author", "title"}) {
        const AVDictionaryEntry* const entry = av_dict_get(s.format->metadata, name, nullptr, 0);
        if (entry != nullptr && *entry->value != '\0')
            result += std::string(name[1] == 'u' ? "artist" : name) + '=' + entry->value + '\0';
    }
    return result;
}

bool LinkDecoder::seek(double seconds) {
    State& s = *m_state;
    if (!s.source.seek)
        return false;
    const double base = av_q2d(s.stream->time_base);
    const auto start = s.stream->start_time != AV_NOPTS_VALUE ? s.stream->start_time : 0;
    const auto target = static_cast<std::int64_t>(seconds / base) + start;
    if (av_seek_frame(s.format.get(), s.stream->index, target, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    avcodec_flush_buffers(s.codec.get());
    s.converter.reset();
    s.gate.reset();
    s.isDraining = false;
    s.dropBefore = static_cast<double>(target) * base;
    return true;
}

} // namespace BASS
