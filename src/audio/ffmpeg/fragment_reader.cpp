#include "audio/ffmpeg/fragment_reader.h"

#include "audio/ffmpeg/av_handles.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <algorithm>

namespace BASS {
namespace {

/// Bytes in memory, as the demuxer reads them.
class Memory {
  public:
    explicit Memory(const std::vector<std::uint8_t>& bytes) : m_bytes(bytes) {
        constexpr int kBlock = 32768;
        m_io.reset(avio_alloc_context(static_cast<unsigned char*>(av_malloc(kBlock)),
                                      kBlock,
                                      0,
                                      this,
                                      &Memory::read,
                                      nullptr,
                                      &Memory::seek));
    }
    [[nodiscard]] AVIOContext* io() const { return m_io.get(); }

  private:
    static int read(void* self, std::uint8_t* out, int max) {
        auto* const memory = static_cast<Memory*>(self);
        const std::size_t count =
            std::min(static_cast<std::size_t>(max), memory->m_bytes.size() - memory->m_at);
        std::copy_n(
            memory->m_bytes.begin() + static_cast<std::ptrdiff_t>(memory->m_at), count, out);
        memory->m_at += count;
        return count > 0 ? static_cast<int>(count) : AVERROR_EOF;
    }
    static std::int64_t seek(void* self, std::int64_t offset, int whence) {
        auto* const memory = static_cast<Memory*>(self);
        const auto size = static_cast<std::int64_t>(memory->m_bytes.size());
        if ((whence & AVSEEK_SIZE) != 0)
            return size;
        const int from = whence & ~AVSEEK_FORCE;
        if (from == SEEK_CUR)
            offset += static_cast<std::int64_t>(memory->m_at);
        else if (from == SEEK_END)
            offset += size;
        if (offset < 0 || offset > size)
            return -1;
        memory->m_at = static_cast<std::size_t>(offset);
        return offset;
    }

    const std::vector<std::uint8_t>& m_bytes;
    std::size_t m_at = 0;
    AvMemoryIo m_io;
};

void readPackets(AVFormatContext& format,
                 int stream,
                 const PacketFramer& framer,
                 std::vector<std::uint8_t>& out) {
    const AvPacket packet(av_packet_alloc());
    while (av_read_frame(&format, packet.get()) >= 0) {
        if (packet->stream_index == stream)
            framer.append(packet->data, packet->size, out);
        av_packet_unref(packet.get());
    }
}

} // namespace

FragmentAudio readFragment(const std::vector<std::uint8_t>& bytes) {
    FragmentAudio result;
    const Memory memory(bytes);
    AVFormatContext* context = avformat_alloc_context();
    context->pb = memory.io();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    if (avformat_open_input(&context, nullptr, av_find_input_format("mov"), nullptr) < 0)
        return result; // has freed the context
    const AvInput format(context);
    const int stream = av_find_best_stream(context, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (stream < 0)
        return result;
    const PacketFramer framer(*context->streams[stream]->codecpar);
    result.codec = framer.codec();
    result.head = framer.head();
    if (result.codec != FramedCodec::Unsupported)
        readPackets(*context, stream, framer, result.bytes);
    return result;
}

} // namespace BASS
