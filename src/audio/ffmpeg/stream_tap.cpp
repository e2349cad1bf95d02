#include "audio/ffmpeg/stream_tap.h"

#include "audio/vorbis_comment.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace BASS {
namespace {

std::string zeroSeparated(const std::vector<std::string>& lines) {
    std::string result;
    for (const std::string& line : lines) {
        result += line;
        result += '\0';
    }
    return result;
}

bool isStation(const HttpHeaders& headers) {
    const auto says = [&headers](const char* name) { return !headers.value(name).empty(); };
    return says("icy-metaint") || says("icy-name") || says("icy-br") || says("ice-audio-info");
}

/// Of a file; 0: a station, which has no end whatever its server says. Some say the greatest
/// number they know.
std::uint64_t lengthOf(const HttpHeaders& headers) {
    constexpr std::uint64_t kMost = 0x7FFFFFFE;
    const std::uint64_t length =
        std::strtoull(headers.value("content-length").c_str(), nullptr, 10);
    return isStation(headers) || length > kMost ? 0 : length;
}

} // namespace

StreamTap::StreamTap(Callbacks callbacks, std::size_t waitAt)
    : m_callbacks(std::move(callbacks)), m_fifo(kTimeShiftBytes, waitAt) {}

HttpHeaders StreamTap::headers() const {
    const std::lock_guard lock(m_mutex);
    return m_headers;
}

std::uint64_t StreamTap::length() const {
    const std::lock_guard lock(m_mutex);
    return m_length;
}

void StreamTap::answered(const HttpHeaders& headers, int /*status*/) {
    const long long metaint = std::strtoll(headers.value("icy-metaint").c_str(), nullptr, 10);
    m_icy.emplace(metaint, static_cast<IcyDemux::Sink&>(*this));
    begin(headers, lengthOf(headers));
}

void StreamTap::streamBegins(const HttpHeaders& given, std::uint64_t length) {
    if (std::exchange(m_isStreaming, true)) {
        linkBegins();
        if (given.value("content-type") == headers().value("content-type"))
            return;
        download(nullptr, 0);
        m_connectionStart = m_position;
    }
    begin(given, length);
}

void StreamTap::begin(const HttpHeaders& headers, std::uint64_t length) {
    {
        const std::lock_guard lock(m_mutex);
        m_headers = headers;
        m_length = length;
    }
    if (!m_callbacks.wantsHeaders || m_callbacks.download == nullptr)
        return;
    const std::string block = zeroSeparated(headers.lines) + '\0';
    if (const CallbackGate::Pass pass(m_gate); pass)
        m_callbacks.download(block.data(), 0, m_callbacks.user);
}

bool StreamTap::body(const std::uint8_t* data, std::size_t size) {
    if (length() > 0 && m_fifo.mustWait(size))
        return false;
    if (!m_icy) // no header at all: HTTP/0.9
        m_icy.emplace(0, static_cast<IcyDemux::Sink&>(*this));
    m_icy->feed(data, size);
    return true;
}

/// What plays live from a buffer that holds a second: neither listeners nor recorders notice, and
/// the processor sleeps. A stream that comes much faster than it plays would fill the system's
/// buffers.
bool StreamTap::canWait() {
    using namespace std::chrono_literals;
    const auto now = std::chrono::steady_clock::now();
    if (const auto passed = now - m_windowStart; passed >= 1s) {
        const auto bytes = static_cast<double>(m_position - m_windowPosition);
        m_arrivalRate = bytes / std::chrono::duration<double>(passed).count();
        m_windowStart = now;
        m_windowPosition = m_position;
    }
    const std::size_t pace = m_fifo.pace();
    return length() == 0 && pace > 0 && m_fifo.size() >= pace &&
           m_arrivalRate < 2.0 * static_cast<double>(pace);
}

void StreamTap::ended(int error) {
    if (m_ogg)
        m_ogg->finish();
    if (const CallbackGate::Pass pass(m_gate); pass) {
        if (m_callbacks.download != nullptr)
            m_callbacks.download(nullptr, 0, m_callbacks.user);
        if (m_callbacks.ended)
            m_callbacks.ended();
    }
    m_fifo.end(error); // last: nobody hears the end before it has been told
}

void StreamTap::audio(const std::uint8_t* data, std::size_t size) {
    if (m_isFirst) {
        m_isFirst = false;
        const std::string type = headers().value("content-type");
        // A stream of Ogg may be entered within a page. At most a few bytes are held back should it
        // be no Ogg after all.
        if (*data == 'O' || type.find("ogg") != std::string::npos)
            m_ogg.emplace(static_cast<OggLinkSplitter::Sink&>(*this));
    }
    if (m_ogg)
        m_ogg->feed(data, size);
    else
        handOn(data, size);
}

void StreamTap::bytes(const std::uint8_t* data, std::size_t size) {
    handOn(data, size);
}

void StreamTap::handOn(const std::uint8_t* data, std::size_t size) {
    download(data, size);
    m_fifo.push(data, size);
    m_position += size;
}

void StreamTap::download(const void* buffer, std::size_t size) {
    if (m_callbacks.download == nullptr)
        return;
    if (const CallbackGate::Pass pass(m_gate); pass)
        m_callbacks.download(buffer, static_cast<DWORD>(size), m_callbacks.user);
}

void StreamTap::title(std::string_view block) {
    if (block == m_lastTitle) // servers repeat the block every few seconds
        return;
    m_lastTitle = block;
    tellTitle(BASS_TAG_META, m_lastTitle);
}

void StreamTap::linkBegins() {
    m_fifo.mark({StreamMark::Kind::LinkStart, m_position, 0, {}});
}

void StreamTap::comments(const std::uint8_t* comments, std::size_t size) {
    if (const auto parsed = parseVorbisComments(comments, size))
        tellTitle(BASS_TAG_OGG, zeroSeparated(parsed->entries));
}

void StreamTap::headersComplete(const std::vector<std::uint8_t>& pages) {
    m_fifo.setLinkHeaders(pages);
}

void StreamTap::tellTitle(DWORD type, const std::string& text) {
    m_fifo.mark({StreamMark::Kind::Title, m_position, type, text});
    if (m_callbacks.title == nullptr)
        return;
    const std::size_t length = text.find_last_not_of('\0') + 1;
    const StreamTitle title{
        m_position - m_connectionStart, type, text.c_str(), static_cast<DWORD>(length)};
    if (const CallbackGate::Pass pass(m_gate); pass)
        m_callbacks.title(title, m_callbacks.user);
}

} // namespace BASS
