#include "base/log.h"
#include "engine/app_stream.h"

// Pausing a station without losing what it sends meanwhile.

using namespace std::chrono_literals;

bool AppStream::canPause() const {
    return m_current.handle != 0 && m_state != PlayState::Stopped;
}

void AppStream::setPaused(bool isPaused) {
    if (!canPause() || m_shift.isPaused() == isPaused)
        return;
    if (isPaused) {
        if (!library().ChannelPause(m_current.handle))
            return;
        m_shift.pause(steadyNow());
        if (m_state != PlayState::Reconnecting)
            setState(PlayState::Paused);
    } else {
        m_shift.resume(steadyNow());
        library().ChannelPlay(m_current.handle, false);
        if (m_state == PlayState::Paused)
            setState(PlayState::Playing);
    }
    qCInfo(lcEngine,
           "paused=%d behind_ms=%lld",
           isPaused,
           static_cast<long long>(behindLive().count()));
    emit sig_streamInfoChanged(streamInfo());
}

/// Where the library cannot do it, the station is connected anew; the recording goes on over that.
void AppStream::jumpToLive() {
    if (!canPause() || !m_current.isLive || behindLive() == 0ms)
        return;
    const bool wasPaused = m_shift.isPaused();
    m_shift.reset();
    if (m_next.handle != 0) { // the connection that came back is the live one
        startPlaying(std::exchange(m_next, {}), 0);
        return;
    }
    if (m_state == PlayState::Reconnecting)
        return;
    const bool isDone = library().ChannelJumpToLive(m_current.handle);
    if (wasPaused)
        library().ChannelPlay(m_current.handle, false);
    setState(PlayState::Playing);
    if (!isDone)
        startConnect(requestFor(m_playedAddress, 1, m_kind));
    emit sig_streamInfoChanged(streamInfo());
}

std::chrono::milliseconds AppStream::behindLive() const {
    return m_current.isLive ? m_shift.behind(steadyNow()) : 0ms;
}
