#include "audio/ffmpeg/byte_fifo.h"

#include <algorithm>
#include <cstring>

namespace BASS {
namespace {

constexpr std::size_t kFirstBytes = 65536;
/// A ring above this that has become so much too big is made smaller: memory that a pause or a slow
/// moment took goes back.
constexpr std::size_t kModestBytes = 1024 * 1024;
constexpr std::size_t kTooBig = 8;
constexpr std::size_t kMaxTitles = 1024;

} // namespace

ByteFifo::ByteFifo(std::size_t bound, std::size_t waitAt)
    : m_bound(bound), m_waitAt(std::min(bound, waitAt)) {}

void ByteFifo::skipToNewest(std::size_t kept) {
    const std::lock_guard lock(m_mutex);
    if (m_size > kept)
        dropOldest(m_size - kept);
    if (m_ring.size() > kFirstBytes && m_size <= m_ring.size() / 4)
        resizeRing(std::max(m_size, kFirstBytes)); // a pause may have been long
}

void ByteFifo::resizeRing(std::size_t size) {
    std::vector<std::uint8_t> other(size);
    copyOut(other.data(), m_size);
    m_ring = std::move(other);
    m_head = 0;
}

void ByteFifo::grow(std::size_t wanted) {
    if (wanted > m_ring.size())
        resizeRing(std::min(m_bound, std::max({wanted, 2 * m_ring.size(), kFirstBytes})));
}

void ByteFifo::copyOut(std::uint8_t* out, std::size_t count) const {
    const std::size_t first = std::min(count, m_ring.size() - m_head);
    std::copy_n(m_ring.begin() + static_cast<std::ptrdiff_t>(m_head), first, out);
    std::copy_n(m_ring.begin(), count - first, out + first);
}

void ByteFifo::push(const std::uint8_t* data, std::size_t size) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_isAborted)
            return;
        size = std::min(size, m_bound); // the network hands over far less at a time
        if (m_size + size > m_bound)
            dropOldest(std::min(m_size, std::max(m_size + size - m_bound, m_bound / 8)));
        grow(m_size + size);
        const std::size_t at = (m_head + m_size) % m_ring.size();
        const std::size_t first = std::min(size, m_ring.size() - at);
        std::copy_n(data, first, m_ring.begin() + static_cast<std::ptrdiff_t>(at));
        std::copy_n(data + first, size - first, m_ring.begin());
        m_size += size;
    }
    m_arrived.notify_one();
}

/// A listener who paused hears the newest part: the oldest goes. The reader finds the next frame or
/// page by itself; where a link's start went, it is told so, and given Ogg's headers again.
void ByteFifo::dropOldest(std::size_t count) {
    const std::uint64_t until = m_position + count;
    bool isNewLink = false;
    while (!m_links.empty() && m_links.front() < until) {
        m_links.pop_front();
        isNewLink = true;
    }
    m_head = (m_head + count) % m_ring.size();
    m_size -= count;
    m_position = until;
    m_hasGap = true;
    if (isNewLink) {
        m_prefix = m_headers;
        m_links.push_front(m_position);
        m_isAtLink = false;
    }
}

void ByteFifo::mark(StreamMark mark) {
    const std::lock_guard lock(m_mutex);
    if (mark.kind == StreamMark::Kind::LinkStart) {
        m_links.push_back(mark.position);
        m_headers.clear();
        return;
    }
    m_titles.push_back(std::move(mark));
    if (m_titles.size() > kMaxTitles)
        m_titles.pop_front();
}

void ByteFifo::setLinkHeaders(const std::vector<std::uint8_t>& pages) {
    const std::lock_guard lock(m_mutex);
    m_headers = pages;
}

void ByteFifo::end(int error) {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnded = true;
        m_error = error;
    }
    m_arrived.notify_all();
}

bool ByteFifo::mustWait(std::size_t size) {
    const std::lock_guard lock(m_mutex);
    m_isWaiting = m_size + size > m_waitAt && !m_isAborted;
    return m_isWaiting;
}

std::uint64_t ByteFifo::nextLink() const {
    const auto next = std::find_if(m_links.begin(), m_links.end(), [this](std::uint64_t position) {
        return position > m_position || !m_isAtLink;
    });
    return next == m_links.end() ? ~std::uint64_t{0} : *next;
}

ByteFifo::Read ByteFifo::read(std::uint8_t* out, std::size_t max) {
    bool hasDrained = false;
    Read result;
    {
        std::unique_lock lock(m_mutex);
        m_arrived.wait(
            lock, [this] { return m_isAborted || m_isEnded || m_size > 0 || !m_prefix.empty(); });
        result.position = m_position;
        if (m_isAborted) {
            result.status = Status::Aborted;
            return result;
        }
        if (!m_links.empty() && m_links.front() == m_position && !m_isAtLink) {
            m_isAtLink = true;
            result.status = Status::LinkEnd;
            m_hasGap = false;
            return result;
        }
        if (m_hasGap) {
            m_hasGap = false;
            result.status = Status::Gap;
            return result;
        }
        if (!m_prefix.empty()) {
            result.status = Status::Bytes;
            result.size = std::min(max, m_prefix.size());
            std::copy_n(m_prefix.begin(), result.size, out);
            m_prefix.erase(m_prefix.begin(),
                           m_prefix.begin() + static_cast<std::ptrdiff_t>(result.size));
            return result;
        }
        if (m_size == 0)
            return result; // the end
        std::uint64_t limit = std::min<std::uint64_t>(max, m_size);
        const std::uint64_t link = nextLink();
        if (link > m_position)
            limit = std::min(limit, link - m_position);
        result.status = Status::Bytes;
        result.size = static_cast<std::size_t>(limit);
        copyOut(out, result.size);
        m_head = (m_head + result.size) % m_ring.size();
        m_size -= result.size;
        m_position += result.size;
        if (m_ring.size() > kModestBytes && m_size < m_ring.size() / kTooBig)
            resizeRing(m_ring.size() / kTooBig * 2);
        if (!m_links.empty() && m_links.front() < m_position) {
            m_links.pop_front();
            m_isAtLink = false;
        }
        if (m_isWaiting && m_size < m_waitAt / 2) {
            m_isWaiting = false;
            hasDrained = true;
        }
    }
    if (hasDrained && m_onDrained)
        m_onDrained();
    return result;
}

std::vector<std::uint8_t> ByteFifo::peek(std::size_t max, std::size_t known, bool& isEnd) {
    std::unique_lock lock(m_mutex);
    const auto available = [this] { return m_prefix.size() + m_size; };
    m_arrived.wait(
        lock, [&] { return m_isAborted || m_isEnded || available() > known || known >= m_bound; });
    isEnd = m_isAborted || (m_isEnded && available() <= max);
    std::vector<std::uint8_t> result(
        m_prefix.begin(),
        m_prefix.begin() + static_cast<std::ptrdiff_t>(std::min(max, m_prefix.size())));
    const std::size_t fromRing = std::min(max - result.size(), m_size);
    result.resize(result.size() + fromRing);
    if (fromRing > 0)
        copyOut(result.data() + result.size() - fromRing, fromRing);
    return result;
}

bool ByteFifo::takeTitle(std::uint64_t position, StreamMark& title) {
    const std::lock_guard lock(m_mutex);
    if (m_titles.empty() || m_titles.front().position > position)
        return false;
    title = std::move(m_titles.front());
    m_titles.pop_front();
    return true;
}

void ByteFifo::abort() {
    {
        const std::lock_guard lock(m_mutex);
        m_isAborted = true;
    }
    m_arrived.notify_all();
}

std::size_t ByteFifo::size() const {
    const std::lock_guard lock(m_mutex);
    return m_size;
}

std::uint64_t ByteFifo::received() const {
    const std::lock_guard lock(m_mutex);
    return m_position + m_size;
}

std::uint64_t ByteFifo::taken() const {
    const std::lock_guard lock(m_mutex);
    return m_position;
}

bool ByteFifo::isEnded() const {
    const std::lock_guard lock(m_mutex);
    return m_isEnded;
}

int ByteFifo::error() const {
    const std::lock_guard lock(m_mutex);
    return m_error;
}

} // namespace BASS
