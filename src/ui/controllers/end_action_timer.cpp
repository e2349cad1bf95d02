#include "ui/controllers/end_action_timer.h"

#include "base/clock.h"

#include <algorithm>

EndActionTimer::EndActionTimer(const Clock& clock, QObject* parent)
    : QObject(parent), m_clock(clock) {
    // Short steps instead of one long timer, which would end after 24 days at most.
    m_timer.setInterval(std::chrono::seconds(1));
    connect(&m_timer, &QTimer::timeout, this, &EndActionTimer::check);
}

void EndActionTimer::start(std::chrono::seconds duration, EndAction action) {
    cancel();
    if (duration > std::chrono::seconds(0)) {
        m_run = Run{m_clock.steady(), duration, action};
        m_timer.start();
    }
}

void EndActionTimer::cancel() {
    m_run.reset();
    m_timer.stop();
}

std::chrono::milliseconds EndActionTimer::remaining() const {
    if (!m_run) {
        return std::chrono::milliseconds(0);
    }
    return std::max(std::chrono::milliseconds(0),
                    m_run->begin + m_run->duration - m_clock.steady());
}

void EndActionTimer::check() {
    if (m_run && remaining().count() == 0) {
        const EndAction action = m_run->action;
        cancel();
        emit sig_due(action);
    }
}
