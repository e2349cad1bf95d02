#include "recording/frame_splitter.h"

#include "audio/frame_header.h"

#include <cstring>
#include <utility>

namespace BASS {
namespace {

constexpr int kChainedHeaders = 3;

bool isTag(const std::uint8_t* data) {
    return std::memcmp(data, "ID3", 3) == 0 || std::memcmp(data, "TAG", 3) == 0 ||
           std::memcmp(data, "APE", 3) == 0;
}

} // namespace

std::optional<FrameHead> mpegHead(const std::uint8_t* data, std::size_t size) {
    const auto frame = parseMpegFrame(data, size);
    if (!frame)
        return std::nullopt;
    const int stream = frame->version * 10 + frame->layer;
    return FrameHead{frame->bytes,
                     frame->samples,
                     frame->sampleRate,
                     static_cast<quint32>(frame->sampleRate * 1000 + stream)};
}

std::optional<FrameHead> adtsHead(const std::uint8_t* data, std::size_t size) {
    const auto frame = parseAdtsFrame(data, size);
    if (!frame)
        return std::nullopt;
    const int stream = frame->profile * 10 + frame->channels;
    return FrameHead{frame->bytes,
                     frame->samples,
                     frame->sampleRate,
                     static_cast<quint32>(frame->sampleRate * 1000 + stream)};
}

FrameSplitter::FrameSplitter(FrameHeadParser parser, std::size_t headerBytes, qint64 position)
    : m_parser(parser), m_headerBytes(headerBytes), m_position(position) {}

void FrameSplitter::push(const char* data, qsizetype size, FrameList& frames) {
    m_buffer.append(data, static_cast<int>(size));
    walk(frames, false);
}

void FrameSplitter::finish(FrameList& frames) {
    walk(frames, true);
    drop(left());
    m_buffer.clear();
    m_cursor = 0;
    m_isInSync = false;
    m_hasGap = true;
}

QByteArray FrameSplitter::takeForeign(bool isEnd) {
    if (m_foreign.size() < (isEnd ? kForeignBytesAtEnd : kForeignBytes))
        return {};
    return std::exchange(m_foreign, {}) + m_buffer.mid(static_cast<int>(m_cursor));
}

void FrameSplitter::walk(FrameList& frames, bool isEnd) {
    while (m_isInSync ? step(frames, isEnd) : seek(isEnd)) {
    }
    compact();
}

/// One frame at the cursor. False: more bytes are needed.
bool FrameSplitter::step(FrameList& frames, bool isEnd) {
    if (left() < m_headerBytes)
        return false;
    const auto here = head(0);
    if (!here || here->stream != m_stream) {
        m_isInSync = false;
        return true;
    }
    if (left() < here->bytes)
        return false;
    if (left() < here->bytes + m_headerBytes) {
        if (!isEnd)
            return false;
        emitFrame(*here, frames);
        return true;
    }
    const auto next = head(here->bytes);
    if (!(next && next->stream == here->stream) && !isTag(bytes(here->bytes))) {
        std::size_t goodAt = 0;
        const Answer torn = isTorn(here->bytes, isEnd, goodAt);
        if (torn == Answer::NeedMore)
            return false;
        if (torn == Answer::Yes) {
            drop(goodAt);
            return true;
        }
        m_isInSync = false;
    }
    emitFrame(*here, frames);
    return true;
}

/// Looks for the next place where frames follow each other. False: more bytes are needed.
bool FrameSplitter::seek(bool isEnd) {
    std::size_t at = 0;
    for (; left() >= m_headerBytes && at <= left() - m_headerBytes; ++at) {
        if (*bytes(at) != 0xFF)
            continue;
        const Answer answer = isChain(at, isEnd);
        if (answer == Answer::No)
            continue;
        drop(at);
        if (answer == Answer::NeedMore)
            return false;
        m_isInSync = true;
        m_stream = head(0)->stream;
        return true;
    }
    drop(at);
    return false;
}

FrameSplitter::Answer FrameSplitter::isChain(std::size_t at, bool isEnd) const {
    const auto first = head(at);
    if (!first)
        return Answer::No;
    std::size_t next = at + first->bytes;
    for (int count = 1; count < kChainedHeaders; ++count) {
        if (left() < next + m_headerBytes) {
            // at the end of a connection the chain may be shorter, where the stream is known
            const bool isKnown = first->stream == m_stream && left() >= at + first->bytes;
            return !isEnd ? Answer::NeedMore : isKnown || count > 1 ? Answer::Yes : Answer::No;
        }
        const auto here = head(next);
        if (!here || here->stream != first->stream)
            return count > 1 && isTag(bytes(next)) ? Answer::Yes : Answer::No;
        next += here->bytes;
    }
    return Answer::Yes;
}

/// The frame at the cursor has no header behind it: does another chain of frames begin inside it?
FrameSplitter::Answer
FrameSplitter::isTorn(std::size_t frameBytes, bool isEnd, std::size_t& goodAt) const {
    for (std::size_t at = 1; at < frameBytes; ++at) {
        if (*bytes(at) != 0xFF)
            continue;
        const auto inner = head(at);
        if (!inner || inner->stream != m_stream)
            continue;
        const Answer answer = isChain(at, isEnd);
        goodAt = at;
        if (answer != Answer::No)
            return answer;
    }
    return Answer::No;
}

void FrameSplitter::emitFrame(const FrameHead& head, FrameList& frames) {
    AudioFrame frame;
    frame.bytes = m_buffer.mid(static_cast<int>(m_cursor), static_cast<int>(head.bytes));
    frame.position = m_position;
    frame.samples = head.samples;
    frame.sampleRate = head.sampleRate;
    frame.stream = head.stream;
    frame.followsGap = m_hasGap;
    frames.push_back(std::move(frame));
    m_hasGap = false;
    m_foreign.clear();
    m_cursor += head.bytes;
    m_position += static_cast<qint64>(head.bytes);
}

void FrameSplitter::drop(std::size_t bytes) {
    m_foreign.append(m_buffer.constData() + m_cursor, static_cast<int>(bytes));
    m_cursor += bytes;
    m_position += static_cast<qint64>(bytes);
    m_dropped += static_cast<qint64>(bytes);
}

void FrameSplitter::compact() {
    m_buffer.remove(0, static_cast<int>(m_cursor));
    m_cursor = 0;
}

const std::uint8_t* FrameSplitter::bytes(std::size_t at) const {
    return reinterpret_cast<const std::uint8_t*>(m_buffer.constData()) + m_cursor + at;
}

std::size_t FrameSplitter::left(std::size_t at) const {
    return static_cast<std::size_t>(m_buffer.size()) - m_cursor - at;
}

std::optional<FrameHead> FrameSplitter::head(std::size_t at) const {
    return m_parser(bytes(at), left(at));
}

} // namespace BASS
