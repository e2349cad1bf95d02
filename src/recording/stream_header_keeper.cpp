#include "recording/stream_header_keeper.h"

#include "recording/flac_frame.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr int kMaxHeaderBytes = 4 * 1024 * 1024; ///< comments may hold a picture
constexpr int kMagicBytes = 4;

// a page's header (RFC 3533, section 6)
constexpr int kFlagsAt = 5;
constexpr int kGranuleAt = 6;
constexpr int kGranuleBytes = 8;
constexpr int kSegmentsAt = 26;
constexpr int kFixedHead = 27;
constexpr int kIsFirst = 2;

int byteAt(const QByteArray& bytes, int at) {
    return static_cast<unsigned char>(bytes.at(at));
}

} // namespace

void StreamHeaderKeeper::reset() {
    *this = StreamHeaderKeeper();
}

void StreamHeaderKeeper::push(const char* data, qsizetype size) {
    switch (m_state) {
    case State::Nothing:
        break;
    case State::Starting:
        start(data, size);
        break;
    case State::Ogg:
        pushOgg(data, size);
        break;
    case State::Flac:
        pushFlac(data, size);
        break;
    }
}

void StreamHeaderKeeper::start(const char* data, qsizetype size) {
    m_header.append(data, static_cast<int>(std::min<qsizetype>(size, kMaxHeaderBytes)));
    if (m_header.size() < kMagicBytes)
        return;
    const QByteArray begin = std::exchange(m_header, {});
    if (begin.startsWith("OggS"))
        m_state = State::Ogg;
    else
        m_state = begin.startsWith("fLaC") ? State::Flac : State::Nothing;
    push(begin.constData(), begin.size());
}

void StreamHeaderKeeper::pushOgg(const char* data, qsizetype size) {
    const char* const end = data + size;
    while (data < end) {
        if (m_bodyLeft == 0) {
            if (completePageHead(data, end))
                beginPage();
            continue;
        }
        const qint64 count = std::min<qint64>(m_bodyLeft, end - data);
        if (m_isKeeping)
            m_header.append(data, static_cast<int>(count));
        m_bodyLeft -= count;
        data += count;
    }
}

/// Takes bytes until a page header is whole. True: it is.
bool StreamHeaderKeeper::completePageHead(const char*& data, const char* end) {
    while (data < end) {
        m_pageHead.append(*data++);
        const QByteArray magic = m_pageHead.left(kMagicBytes);
        if (!QByteArray("OggS").startsWith(magic)) {
            m_pageHead = m_pageHead.endsWith('O') ? QByteArray("O") : QByteArray();
            continue;
        }
        if (m_pageHead.size() >= kFixedHead &&
            m_pageHead.size() == kFixedHead + byteAt(m_pageHead, kSegmentsAt))
            return true;
    }
    return false;
}

/// Header pages have the granule position 0, or -1 where no packet ends on them; audio has others.
void StreamHeaderKeeper::beginPage() {
    const bool isFirst = (byteAt(m_pageHead, kFlagsAt) & kIsFirst) != 0;
    const QByteArray granule = m_pageHead.mid(kGranuleAt, kGranuleBytes);
    const bool isAudio =
        granule != QByteArray(kGranuleBytes, '\0') && granule != QByteArray(kGranuleBytes, '\xFF');
    // first pages that stand together belong to one link
    if (isFirst && !m_wasFirstPage) {
        m_header.clear();
        m_isKeeping = true;
    }
    m_wasFirstPage = isFirst;
    if (isAudio || m_header.size() > kMaxHeaderBytes)
        m_isKeeping = false;
    m_bodyLeft = 0;
    for (int n = kFixedHead; n < m_pageHead.size(); ++n)
        m_bodyLeft += byteAt(m_pageHead, n);
    if (m_isKeeping)
        m_header += m_pageHead;
    m_pageHead.clear();
}

void StreamHeaderKeeper::pushFlac(const char* data, qsizetype size) {
    m_header.append(data, static_cast<int>(size));
    const qint64 whole =
        flacHeaderBytes(reinterpret_cast<const std::uint8_t*>(m_header.constData()),
                        static_cast<std::size_t>(m_header.size()));
    if (whole > 0)
        m_header.truncate(static_cast<int>(whole));
    else if (m_header.size() > kMaxHeaderBytes)
        m_header.clear();
    if (whole != 0 || m_header.isEmpty())
        m_state = State::Nothing;
}

} // namespace BASS
