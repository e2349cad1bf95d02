#include "recording/recording_buffer.h"

#include "base/log.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <vector>

namespace BASS {
namespace {

/// So much before the title is fed as well: a cut needs the frames before it.
constexpr qint64 kLeadBytes = 65536;
constexpr std::size_t kMostMarks = 1000;

/// Other instances have buffers of their own, and the name must be free.
QString mappingName() {
    static std::atomic<int> count{0};
    return QStringLiteral("map_%1").arg(QStringLiteral("%1_%2").arg(
        QString::number(QCoreApplication::applicationPid()), QString::number(++count)));
}

/// The places of the buffer's titles, the newest last.
std::vector<const RecordingBuffer::Mark*> titles(const RecordingBuffer& buffer) {
    std::vector<const RecordingBuffer::Mark*> result;
    for (const RecordingBuffer::Mark& mark : buffer.marks()) {
        if (mark.event == RecordingBuffer::Event::Title)
            result.push_back(&mark);
    }
    return result;
}

/// The index of the running song's title; -1: the buffer does not hold it.
int runningTitle(const std::vector<const RecordingBuffer::Mark*>& titles, const Song& running) {
    for (int n = static_cast<int>(titles.size()) - 1; n >= 0; --n) {
        if (running.isEmpty() || titles[static_cast<std::size_t>(n)]->song.track == running.track)
            return n;
    }
    return -1;
}

BufferStart startAt(const RecordingBuffer& buffer, const RecordingBuffer::Mark& title) {
    return {std::max(buffer.first(), title.position - kLeadBytes), title.song};
}

} // namespace

RecordingBuffer::RecordingBuffer(qint64 bytes, qint64 position)
    : m_memory(bytes, mappingName()), m_end(position) {}

void RecordingBuffer::append(const char* data, qint64 bytes) {
    if (!isValid())
        return;
    const qint64 size = m_memory.size();
    const qint64 skipped = std::max<qint64>(0, bytes - size);
    data += skipped;
    m_end += skipped;
    for (qint64 left = bytes - skipped; left > 0;) {
        const qint64 at = m_end % size;
        const qint64 part = std::min(left, size - at);
        std::memcpy(m_memory.data() + at, data, static_cast<std::size_t>(part));
        data += part;
        left -= part;
        m_end += part;
    }
    m_held = std::min(m_held + bytes, size);
    // a title at the first byte still counts: its whole song is there
    while (!m_marks.empty() && (m_marks.front().position < first() || m_marks.size() > kMostMarks))
        m_marks.pop_front();
    while (!m_headers.empty() && m_headers.front().end <= first())
        m_headers.pop_front();
}

void RecordingBuffer::connectionBegan(bool isStart) {
    m_marks.push_back({Event::ConnectionBegan, m_end, {}, isStart});
}

void RecordingBuffer::connectionEnded(const QByteArray& header) {
    m_marks.push_back({Event::ConnectionEnded, m_end, {}, false});
    m_headers.push_back({m_end, header});
}

void RecordingBuffer::addTitle(const Song& song, qint64 position) {
    if (position >= first())
        m_marks.push_back({Event::Title, std::min(position, m_end), song, false});
}

void RecordingBuffer::clear() {
    qCInfo(lcRecording) << "CRecording::Clear() Resetting temp file to start of file";
    m_held = 0;
    m_marks.clear();
    m_headers.clear();
}

QByteArray RecordingBuffer::read(qint64 position, qint64 most) const {
    const qint64 count = std::min(most, m_end - position);
    if (position < first() || count <= 0)
        return {};
    const qint64 at = position % m_memory.size();
    const qint64 part = std::min(count, m_memory.size() - at);
    QByteArray bytes(m_memory.data() + at, static_cast<int>(part));
    return bytes.append(m_memory.data(), static_cast<int>(count - part));
}

QByteArray RecordingBuffer::headerAt(qint64 position) const {
    for (const Header& header : m_headers) {
        if (header.end > position)
            return header.bytes;
    }
    return {};
}

std::unique_ptr<RecordingBuffer> RecordingBuffer::copyFrom(qint64 position) const {
    const qint64 from = std::max(position, first());
    auto copy = std::make_unique<RecordingBuffer>(std::max<qint64>(1, m_end - from), from);
    if (!copy->isValid())
        return nullptr;
    for (qint64 at = from; at < m_end;) {
        const QByteArray block = read(at, kLeadBytes);
        copy->append(block.constData(), block.size());
        at += block.size();
    }
    for (const Mark& mark : m_marks) {
        if (mark.position >= from)
            copy->m_marks.push_back(mark);
    }
    copy->m_headers = m_headers;
    return copy;
}

BufferStart planBufferStart(const RecordingBuffer& buffer, const Song& running, bool isWhole) {
    const auto all = titles(buffer);
    const int at = runningTitle(all, running);
    if (isWhole || at < 0)
        return {buffer.first(), std::nullopt};
    return startAt(buffer, *all[static_cast<std::size_t>(at)]);
}

Song openingSong(const RecordingBuffer& buffer, qint64 position) {
    bool isStart = false;
    for (const RecordingBuffer::Mark& mark : buffer.marks()) {
        if (mark.event != RecordingBuffer::Event::Title)
            isStart = mark.isStart && mark.position == position;
        else if (isStart)
            return mark.position - position <= kFirstTitleBytes ? mark.song : Song();
    }
    return {};
}

std::optional<BufferStart> planLastTitle(const RecordingBuffer& buffer, const Song& running) {
    const auto all = titles(buffer);
    const int at = runningTitle(all, running);
    if (at < 1)
        return std::nullopt;
    return startAt(buffer, *all[static_cast<std::size_t>(at - 1)]);
}

} // namespace BASS
