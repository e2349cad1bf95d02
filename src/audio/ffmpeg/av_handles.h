#pragma once

#include <memory>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;

// FFmpeg's objects with their owners. Any thread; one at a time, as FFmpeg asks.

namespace BASS {

struct AvFree {
    void operator()(AVPacket* packet) const;
    void operator()(AVFrame* frame) const;
    void operator()(AVCodecContext* context) const;
    /// One that reads; muxers are freed otherwise.
    void operator()(AVFormatContext* input) const;
    /// One made by avio_alloc_context(), with its buffer; not what avio_open() gives.
    void operator()(AVIOContext* io) const;
};

using AvPacket = std::unique_ptr<AVPacket, AvFree>;
using AvFrame = std::unique_ptr<AVFrame, AvFree>;
using AvCodec = std::unique_ptr<AVCodecContext, AvFree>;
using AvInput = std::unique_ptr<AVFormatContext, AvFree>;
using AvMemoryIo = std::unique_ptr<AVIOContext, AvFree>;

} // namespace BASS
