#include "engine/app_stream.h"

#include "base/clock.h"
#include "base/log.h"
#include "engine/engine_events.h"
#include "engine/library_errors.h"
#include "engine/reconnect_policy.h"

#include <algorithm>

using namespace std::chrono_literals;
using BASS::Channel;
using BASS::ChannelNotice;
using BASS::DWORD;
using BASS::QWORD;

namespace {
constexpr auto kInfoInterval = 1s;
constexpr auto kProgressInterval = 250ms;
constexpr auto kUnwatchedInterval = 60s;
/// A connection that lasted so long was a good one; its loss starts a new count of attempts.
constexpr auto kStableConnection = 10s;
constexpr int kReconnectFadeMs = 50;
constexpr int kFullConnectEvery = 8;
constexpr QWORD kUnknown = ~QWORD{0};
} // namespace

std::chrono::milliseconds AppStream::steadyNow() {
    return SystemClock().steady();
}

AppStream::AppStream(std::shared_ptr<BASS::AudioLibrary> audioLibrary, QObject* parent)
    : Stream(std::move(audioLibrary), parent),
      m_encoder(library(), m_recorder, [this](int code) { return errorText(code); }) {
    m_reconnectTimer.setSingleShot(true);
    connect(&m_reconnectTimer, &QTimer::timeout, this, &AppStream::reconnect);
    m_infoTimer.setInterval(kInfoInterval);
    connect(
        &m_infoTimer, &QTimer::timeout, this, [this] { emit sig_streamInfoChanged(streamInfo()); });
    m_recorder.setTailKept(true);
    connect(&m_recorder, &BASS::StreamRecorder::sig_finished, this, &AppStream::recordingFinished);
}

AppStream::~AppStream() {
    endWorkers();
    m_encoder.finish();
    disconnectChannels(0ms);
    m_recorder.stopAndWait();
    m_originals.stopAndWait();
}

// --- commands
// -------------------------------------------------------------------------------------

void AppStream::play(const BASS::StationRecord& station) {
    CancelConnect();
    stopRecording();
    m_reconnectTimer.stop();
    const bool isSounding = m_current.handle != 0;
    disconnectChannels(isSounding ? std::min<std::chrono::milliseconds>(settings().fadeOut, 300ms)
                                  : 0ms);
    Clear();
    m_recorder.clearBuffer();
    m_recorder.setBufferSize(settings().recordingBufferMegabytes);
    m_station = station;
    m_lostAt = 0ms;
    m_reconnectAttempt = 0;
    m_kind = BASS::StreamKind::None;
    m_playedAddress = station.playUrl();
    m_shift.reset();
    m_splitDelayMs = station.splitDelayMs;
    setStation(station);
    recallAutoGain();
    emit sig_stationChanged(m_station);
    publishSong();
    if (!InitLibrary()) {
        emit sig_connectFailed(lastError());
        setState(PlayState::Stopped);
        return;
    }
    setState(PlayState::Connecting);
    startConnect(requestFor(station.playUrl(), settings().attempts, BASS::StreamKind::None));
}

BASS::ConnectRequest
AppStream::requestFor(const QString& address, int attempts, BASS::StreamKind kind) const {
    BASS::ConnectRequest request;
    request.address = address;
    request.declaredFormat = m_station.format;
    request.attempts = attempts;
    request.knownKind = kind;
    request.isPlaylistChecked = settings().isPlaylistChecked;
    request.hasProxy = !settings().proxy.isEmpty();
    request.userAgent = settings().userAgent;
    request.knownAddress = m_playedAddress;
    request.recordingDevice = settings().recordingDeviceName;
    return request;
}

void AppStream::stop() {
    CancelConnect();
    m_reconnectTimer.stop();
    stopRecording();
    m_shift.reset();
    const bool wasConnecting =
        m_state == PlayState::Connecting || m_state == PlayState::Reconnecting;
    disconnectChannels(settings().fadeOut);
    Clear();
    publishSong();
    if (m_state != PlayState::Stopped)
        emit sig_statusLine(wasConnecting ? tr("Connection canceled") : tr("Stopped"), true);
    setState(PlayState::Stopped);
}

void AppStream::startRecording(const BASS::RecordingOptions& options) {
    m_isRecorderOn = true;
    if (isEncodingWanted(options)) {
        startEncoding(options);
    } else {
        // a buffer reaches back to the song that is heard; without one only what arrives can be had
        const BASS::Song heard = song();
        const bool hasBuffer = settings().recordingBufferMegabytes > 0 && !heard.isEmpty();
        m_recorder.start(options, hasBuffer ? heard : arrivedSong());
    }
    emit sig_recordingChanged(m_recorder.isRunning());
}

void AppStream::startEncoding(const BASS::RecordingOptions& options) {
    const BASS::Song song = arrivedSong();
    const BASS::Song heard = this->song();
    if (options.isOriginalKept) {
        BASS::RecordingOptions original = options;
        original.folder += QStringLiteral("/Originals");
        original.encoder = 0;
        original.hasTrackList = original.isTitleListKept = false; // one list is enough
        m_originals.start(original, song);
    }
    // what was played out while the station is away has freed itself
    BASS::BASS_CHANNELINFO info{};
    const bool isThere = m_current.handle != 0 && library().ChannelGetInfo(m_current.handle, &info);
    m_encoder.start(options, heard.isEmpty() ? song : heard, isThere ? m_current.handle : 0);
}

void AppStream::recordingFinished() {
    m_isRecorderOn = m_recorder.isRunning();
    if (!m_isRecorderOn) {
        // the files may have ended by themselves: nothing is left to encode for
        m_encoder.finish();
        m_originals.stop();
        tellPaused(false);
    }
    emit sig_recordingChanged(m_isRecorderOn);
}

bool AppStream::isEncodingWanted(const BASS::RecordingOptions& options) {
    if (options.encoder == 0)
        return false;
    BASS::BASS_CHANNELINFO info{};
    if (!options.isSameKept || !library().ChannelGetInfo(m_current.handle, &info))
        return true;
    return !BASS::isSameAsEncoded(
        options.encoder, options.encodingBitrate, info.ctype, streamInfo().bitrate);
}

bool AppStream::keepLastTitle(const BASS::RecordingOptions& options) {
    if (!m_recorder.keepLastTitle(options, song()))
        return false;
    emit sig_recordingChanged(true);
    return true;
}

void AppStream::setRecordingPaused(bool isPaused) {
    if (isPaused && !m_recorder.isRunning())
        return;
    m_recorder.setPaused(isPaused);
    m_originals.setPaused(isPaused);
    m_encoder.setPaused(isPaused);
    tellPaused(isPaused);
}

void AppStream::tellPaused(bool isPaused) {
    if (std::exchange(m_isRecordingPaused, isPaused) != isPaused)
        emit sig_recordingPaused(isPaused);
}

void AppStream::stopRecording() {
    m_encoder.stop();
    for (BASS::StreamRecorder* recorder : {&m_recorder, &m_originals}) {
        if (recorder->isRunning())
            recorder->stop();
    }
}

// --- what is shown
// ----------------------------------------------------------------------------------

BASS::Song AppStream::song() const {
    const std::lock_guard lock(m_tagMutex);
    return m_song;
}

StreamInfo AppStream::streamInfo() {
    StreamInfo info;
    const BASS::StreamHeaders headers = streamHeaders();
    info.stationName = headers.name;
    info.genre = headers.genre;
    info.website = headers.website;
    info.bitrate = headers.bitrate;
    info.isPaused = isPaused();
    info.behindLiveMs = static_cast<int>(behindLive().count());
    const DWORD handle = GetHandle();
    BASS::BASS_CHANNELINFO channel{};
    if (handle == 0 || !library().ChannelGetInfo(handle, &channel))
        return info;
    info.format = channel.ctype == BASS::BASS_CTYPE_STREAM_OPUS
                      ? QStringLiteral("Opus")
                      : BASS::channelTypeName(channel.ctype);
    info.sampleRate = static_cast<int>(channel.freq);
    info.channels = static_cast<int>(channel.chans);
    float bitrate = 0.0F;
    if (info.bitrate == 0 &&
        library().ChannelGetAttribute(handle, BASS::BASS_ATTRIB_BITRATE, &bitrate))
        info.bitrate = static_cast<int>(bitrate + 0.5F);
    const auto position = [this, handle](DWORD mode) {
        const QWORD value = library().StreamGetFilePosition(handle, mode);
        return value == kUnknown ? qint64{0} : static_cast<qint64>(value);
    };
    info.bytesReceived = position(BASS::BASS_FILEPOS_DOWNLOAD);
    if (info.bitrate > 0)
        info.bufferedMs = static_cast<int>(position(BASS::BASS_FILEPOS_BUFFER) * 8 / info.bitrate);
    return info;
}

void AppStream::setWatched(bool isWatched) {
    m_infoTimer.setInterval(isWatched ? kInfoInterval : kUnwatchedInterval);
    const std::chrono::milliseconds every = isWatched ? kProgressInterval : kUnwatchedInterval;
    m_recorder.setProgressInterval(every);
    m_originals.setProgressInterval(every);
}

void AppStream::setState(PlayState state) {
    if (state == PlayState::Stopped)
        m_infoTimer.stop();
    else if (!m_infoTimer.isActive())
        m_infoTimer.start();
    if (m_state == state)
        return;
    m_state = state;
    emit sig_stateChanged(state);
}

void AppStream::publishSong() {
    const BASS::Song heard = song();
    if (heard == m_publishedSong)
        return;
    m_publishedSong = heard;
    emit sig_songChanged(heard);
}

void AppStream::onStatusLine(const QString& text, bool isImportant) {
    emit sig_statusLine(text, isImportant);
}

// --- channels
// ---------------------------------------------------------------------------------------

void AppStream::fadeOut(Channel channel, std::chrono::milliseconds fade) {
    if (channel.connect != nullptr)
        channel.connect->detachSink();
    const bool isSounding = channel.handle != 0 &&
                            library().ChannelIsActive(channel.handle) == BASS::BASS_ACTIVE_PLAYING;
    if (fade <= 0ms || !isSounding) {
        freeChannel(std::move(channel));
        return;
    }
    const DWORD handle = channel.handle;
    library().ChannelSlideAttribute(
        handle, BASS::BASS_ATTRIB_VOL, 0.0F, static_cast<DWORD>(fade.count()));
    m_fading.push_back(std::move(channel));
    QTimer::singleShot(fade + 50ms, this, [this, handle] {
        const auto found = std::find_if(m_fading.begin(),
                                        m_fading.end(),
                                        [handle](const Channel& c) { return c.handle == handle; });
        if (found == m_fading.end())
            return;
        freeChannel(std::move(*found));
        m_fading.erase(found);
    });
}

/// A station that is played again, or comes back after a gap, begins as loud as it was.
void AppStream::rememberAutoGain() {
    float decibel = 0.0F;
    if (soundOptions().isAutoVolume && ChannelGetAttribute(BASS::BASS_ATTRIB_AUTO_GAIN, &decibel) &&
        decibel != 0.0F)
        m_autoGains.insert(m_station.playUrl(), decibel);
}

void AppStream::recallAutoGain() {
    setAutoVolumeStart(m_autoGains.value(m_station.playUrl(), 0.0F));
}

void AppStream::disconnectChannels(std::chrono::milliseconds fade) {
    rememberAutoGain();
    freeChannel(std::exchange(m_next, {}));
    fadeOut(std::exchange(m_current, {}), fade);
    setHandle(0);
    if (fade > 0ms)
        return;
    for (Channel& channel : m_fading)
        freeChannel(std::move(channel));
    m_fading.clear();
}

void AppStream::startPlaying(const Channel& channel, int fadeInMs) {
    m_encoder.setChannel(channel.handle);
    freeChannel(std::exchange(m_current, channel));
    setHandle(channel.handle);
    if (channelVolumeFloat() > 0.0F)
        ChannelSetAttribute(BASS::BASS_ATTRIB_VOL, channelVolumeFloat());
    registerSyncs();
    if (!ChannelPlay(fadeInMs))
        AddLog(errorText(), true);
    m_connectedAt = steadyNow();
    onMetaChanged(channel.handle);
    setState(PlayState::Playing);
    emit sig_streamInfoChanged(streamInfo());
}

void AppStream::onConnected(const Channel& channel) {
    m_kind = channel.connect->kind();
    m_playedAddress = channel.connect->address();
    const DWORD activity = m_current.handle != 0 ? library().ChannelIsActive(m_current.handle) : 0;
    if (activity == BASS::BASS_ACTIVE_PLAYING || activity == BASS::BASS_ACTIVE_PAUSED) {
        // what the lost connection still had in its buffer is heard to its end
        freeChannel(std::exchange(m_next, channel));
        m_connectedAt = steadyNow();
        setState(m_shift.isPaused() ? PlayState::Paused : PlayState::Playing);
        return;
    }
    startPlaying(channel, m_current.handle != 0 ? kReconnectFadeMs : -1);
}

void AppStream::onConnectFailed(const BASS::ConnectSequence& connect) {
    const QString reason = errorText(connect.errorCode() == 0 ? -1 : connect.errorCode());
    if (m_state == PlayState::Reconnecting) {
        AddLog(reason, true);
        scheduleReconnect();
        return;
    }
    // a recording is waited for: the station may be back in a moment
    if (m_recorder.isRunning() && !connect.isLocalFile()) {
        m_lostAt = steadyNow();
        setState(PlayState::Reconnecting);
        scheduleReconnect();
        return;
    }
    giveUp(reason);
}

void AppStream::giveUp(const QString& reason) {
    stopRecording();
    disconnectChannels(0ms);
    const QString message = tr("Failed to connect at this time") + QStringLiteral(": ") + reason;
    AddLog(message, true);
    setState(PlayState::Stopped);
    emit sig_statusLine(message, true);
    emit sig_connectFailed(message);
}

// --- loss and return
// ----------------------------------------------------------------------------------

std::chrono::milliseconds AppStream::outage() const {
    return m_lostAt == 0ms ? 0ms : steadyNow() - m_lostAt;
}

void AppStream::connectionLost(unsigned channel) {
    const bool isCurrent = channel == m_current.handle && m_next.handle == 0;
    const bool isNext = channel == m_next.handle && m_next.handle != 0;
    const Channel& lost = isNext ? m_next : m_current;
    if (!(isCurrent || isNext) || isConnecting() || !lost.isLive)
        return;
    // a server that takes every connection and drops it again is one long outage
    if (steadyNow() - m_connectedAt >= kStableConnection || m_lostAt == 0ms) {
        m_reconnectAttempt = 0;
        m_lostAt = steadyNow();
    }
    m_encoder.connectionLost();
    AddLog(tr("The connection to the station was lost"), true);
    setState(PlayState::Reconnecting);
    scheduleReconnect();
}

void AppStream::scheduleReconnect() {
    if (!m_recorder.isRunning() && outage() > settings().patience) {
        giveUp(tr("The station did not come back"));
        return;
    }
    ++m_reconnectAttempt;
    const auto pause = BASS::reconnectPause(m_reconnectAttempt, outage());
    emit sig_statusLine(tr("Connection lost, reconnecting..."), true);
    m_reconnectTimer.start(pause);
}

void AppStream::reconnect() {
    if (m_state != PlayState::Reconnecting)
        return;
    qCInfo(lcEngine,
           "reconnecting attempt=%d outage_ms=%lld",
           m_reconnectAttempt,
           static_cast<long long>(outage().count()));
    rememberAutoGain();
    recallAutoGain();
    // now and then from the very beginning: what a playlist named may be gone for good
    const bool isFromStart = m_reconnectAttempt % kFullConnectEvery == 0;
    startConnect(isFromStart ? requestFor(m_station.playUrl(), 1, BASS::StreamKind::None)
                             : requestFor(m_playedAddress, 1, m_kind));
}

void AppStream::channelEnded(unsigned channel) {
    if (channel != m_current.handle)
        return;
    if (m_next.handle != 0) {
        startPlaying(std::exchange(m_next, {}), kReconnectFadeMs);
        return;
    }
    if (m_state == PlayState::Reconnecting || isConnecting())
        return; // played out while the station is away
    if (m_current.isLive) {
        connectionLost(channel);
        return;
    }
    stopRecording();
    disconnectChannels(0ms);
    emit sig_statusLine(tr("Finished"), true);
    setState(PlayState::Stopped);
}

void AppStream::stalled(unsigned channel, bool isResumed) {
    if (channel != m_current.handle)
        return;
    if (!isResumed && m_state == PlayState::Playing)
        setState(PlayState::Stalled);
    else if (isResumed && m_state == PlayState::Stalled)
        setState(PlayState::Playing);
}

void AppStream::onNotification(int code, const QVariant& payload) {
    const auto notice = payload.value<ChannelNotice>();
    switch (code) {
    case BASS::kNotifyLog:
    case BASS::kNotifyErrorLog:
        emit sig_logLine(payload.toString(), code == BASS::kNotifyErrorLog);
        break;
    case BASS::kNotifyMetaChanged:
        publishSong();
        break;
    case BASS::kNotifyStall:
        stalled(notice.channel, notice.data != 0);
        break;
    case BASS::kNotifyDownloadEnded:
        connectionLost(notice.channel);
        break;
    case BASS::kNotifyEnd:
        channelEnded(notice.channel);
        break;
    default:
        break;
    }
}

// --- network thread
// -----------------------------------------------------------------------------------

void AppStream::connectionBegan(const char* headers) {
    Stream::connectionBegan(headers);
    m_recorder.connectionBegan();
    m_originals.connectionBegan();
    m_encoder.connectionBegan();
}

void AppStream::audioBytes(const char* data, qint64 bytes) {
    const qint64 end = m_recorder.append(data, bytes);
    m_encoder.audioBytes(data, bytes, end);
    m_originals.append(data, bytes);
}

void AppStream::connectionEnded() {
    m_recorder.connectionEnded();
    m_originals.connectionEnded();
    m_encoder.connectionEnded();
}
