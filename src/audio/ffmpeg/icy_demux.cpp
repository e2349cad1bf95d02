#include "audio/ffmpeg/icy_demux.h"

#include <algorithm>
#include <cstring>

namespace BASS {
namespace {

/// Servers use 8 to 64 KiB. A number far beyond comes from a broken server, and believing it would
/// only lose titles; a stream without blocks is not hurt either way.
constexpr std::int64_t kMaxMetaint = 16 << 20;

} // namespace

IcyDemux::IcyDemux(std::int64_t metaint, Sink& sink) : m_sink(sink) {
    if (metaint > 0 && metaint <= kMaxMetaint)
        m_metaint = static_cast<std::size_t>(metaint);
    m_audioLeft = m_metaint;
}

void IcyDemux::feed(const std::uint8_t* data, std::size_t size) {
    if (m_metaint == 0) {
        if (size > 0)
            m_sink.audio(data, size);
        return;
    }
    const std::uint8_t* const end = data + size;
    while (data < end) {
        const auto left = static_cast<std::size_t>(end - data);
        if (m_state == State::Audio) {
            const std::size_t n = std::min(left, m_audioLeft);
            m_sink.audio(data, n);
            data += n;
            m_audioLeft -= n;
            if (m_audioLeft == 0)
                m_state = State::Length;
        } else if (m_state == State::Length) {
            m_blockSize = *data++ * std::size_t{16};
            m_blockFill = 0;
            m_state = State::Block;
            if (m_blockSize == 0)
                blockEnds();
        } else {
            const std::size_t n = std::min(left, m_blockSize - m_blockFill);
            std::memcpy(m_block.data() + m_blockFill, data, n);
            data += n;
            m_blockFill += n;
            if (m_blockFill == m_blockSize)
                blockEnds();
        }
    }
}

void IcyDemux::blockEnds() {
    m_state = State::Audio;
    m_audioLeft = m_metaint;
    const auto* const begin = m_block.data();
    const auto length =
        static_cast<std::size_t>(std::find(begin, begin + m_blockSize, '\0') - begin);
    if (length > 0)
        m_sink.title({begin, length});
}

} // namespace BASS
