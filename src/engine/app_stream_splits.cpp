#include "base/log.h"
#include "engine/app_stream.h"
#include "engine/engine_events.h"

#include <QCoreApplication>
#include <QTimer>

// Tracks that change while a recording runs: the recorder cuts, the window is told.

/// Network thread. The cut itself is the recorder's: it knows the title's place in the bytes and
/// counts the delay in stream time, so that neither a busy window nor a burst of the server moves
/// it. The events tell the window when it is due by the clock.
void AppStream::OnSplitFile(const BASS::Song& song) {
    m_recorder.trackChanged(song);
    m_originals.trackChanged(song);
    m_encoder.cutAt(song);
    if (!m_isRecorderOn)
        return;
    const unsigned delayMs = m_splitDelayMs;
    qCDebug(lcEngine, "AppStream::OnSplitFile %u", delayMs);
    if (delayMs != 0)
        postSplitDelay(song);
    else
        postSplit(song);
}

bool AppStream::event(QEvent* event) {
    if (event->type() == static_cast<QEvent::Type>(BASS::kSplitDelayEvent)) {
        splitDelayed(static_cast<BASS::SplitDelayEvent*>(event)->song());
        return true;
    }
    if (event->type() == static_cast<QEvent::Type>(BASS::kSplitEvent)) {
        m_pendingSong = static_cast<BASS::SplitEvent*>(event)->song();
        if (m_mainObject != nullptr)
            QCoreApplication::postEvent(m_mainObject, new BASS::SplitEvent(m_pendingSong));
        return true;
    }
    return Stream::event(event);
}

/// A timer that runs already fires with the newest song; it is not stopped.
void AppStream::splitDelayed(const BASS::Song& song) {
    constexpr unsigned kShortDelayMs = 200; // not waited for, deliberately
    m_pendingSong = song;
    if (m_splitDelayMs > kShortDelayMs)
        QTimer::singleShot(static_cast<int>(m_splitDelayMs), this, &AppStream::slot_splitDelay);
    else
        postSplit(song);
}

void AppStream::slot_splitDelay() {
    qCDebug(lcEngine) << "AppStream::slot_SplitDelay" << m_pendingSong.title;
    postSplit(m_pendingSong);
}

void AppStream::postSplitDelay(const BASS::Song& song) {
    QCoreApplication::postEvent(this, new BASS::SplitDelayEvent(song));
}

void AppStream::postSplit(const BASS::Song& song) {
    QCoreApplication::postEvent(this, new BASS::SplitEvent(song));
}
