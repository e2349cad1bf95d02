#include "engine/stream_sink.h"

#include "base/log.h"

#include <cstring>

namespace BASS {
namespace {

/// A create call lasts seconds at most; a server that sends more than this meanwhile is not played
/// live.
constexpr qint64 kMostHeldBytes = 64 * 1024 * 1024;

QByteArray headerList(const char* headers) {
    const char* end = headers;
    while (*end != '\0')
        end += std::strlen(end) + 1;
    return QByteArray(headers, static_cast<int>(end - headers + 1));
}

} // namespace

void HeldSink::connectionBegan(const char* headers) {
    take({Kind::Began, headerList(headers)});
}

void HeldSink::audioBytes(const char* data, qint64 bytes) {
    const std::lock_guard lock(m_mutex);
    if (m_target == nullptr)
        return;
    if (m_isReleased) {
        m_target->audioBytes(data, bytes);
        return;
    }
    m_heldBytes += bytes;
    if (m_heldBytes > kMostHeldBytes) {
        qCWarning(lcEngine, "held bytes dropped bytes=%lld", static_cast<long long>(bytes));
        return;
    }
    m_held.push_back({Kind::Bytes, QByteArray(data, static_cast<int>(bytes))});
}

void HeldSink::titleArrived(const StreamTitle& title) {
    take({Kind::Title,
          QByteArray(title.data, static_cast<int>(title.length)),
          title.position,
          title.tagType});
}

void HeldSink::connectionEnded() {
    take({Kind::Ended, {}});
}

void HeldSink::take(Item item) {
    const std::lock_guard lock(m_mutex);
    if (m_target == nullptr)
        return;
    if (m_isReleased)
        pass(item);
    else
        m_held.push_back(std::move(item));
}

void HeldSink::pass(const Item& item) {
    switch (item.kind) {
    case Kind::Began:
        m_target->connectionBegan(item.data.constData());
        break;
    case Kind::Bytes:
        m_target->audioBytes(item.data.constData(), item.data.size());
        break;
    case Kind::Title:
        m_target->titleArrived({item.position,
                                item.tagType,
                                item.data.constData(),
                                static_cast<DWORD>(item.data.size())});
        break;
    case Kind::Ended:
        m_target->connectionEnded();
        break;
    }
}

void HeldSink::release() {
    const std::lock_guard lock(m_mutex);
    m_isReleased = true;
    if (m_target != nullptr) {
        for (const Item& item : m_held)
            pass(item);
    }
    m_held = {};
}

void HeldSink::discard() {
    const std::lock_guard lock(m_mutex);
    m_held = {};
    m_heldBytes = 0;
}

void HeldSink::detach() {
    const std::lock_guard lock(m_mutex);
    m_target = nullptr;
    m_held = {};
}

} // namespace BASS
