#include "recording/mailbox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <utility>

namespace BASS {

void Mailbox::post(std::function<void()> call) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_calls.push_back(std::move(call));
        if (m_calls.size() > 1)
            return; // the event is on its way
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void Mailbox::customEvent(QEvent* /*event*/) {
    std::vector<std::function<void()>> calls;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        calls.swap(m_calls);
    }
    const QPointer<Mailbox> self(this);
    for (const auto& call : calls) {
        if (self) // a slot may have destroyed the owner
            call();
    }
}

} // namespace BASS
