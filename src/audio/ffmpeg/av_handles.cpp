#include "audio/ffmpeg/av_handles.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace BASS {

void AvFree::operator()(AVPacket* packet) const {
    av_packet_free(&packet);
}

void AvFree::operator()(AVFrame* frame) const {
    av_frame_free(&frame);
}

void AvFree::operator()(AVCodecContext* context) const {
    avcodec_free_context(&context);
}

void AvFree::operator()(AVFormatContext* input) const {
    avformat_close_input(&input);
}

void AvFree::operator()(AVIOContext* io) const {
    av_freep(&io->buffer);
    avio_context_free(&io);
}

} // namespace BASS
