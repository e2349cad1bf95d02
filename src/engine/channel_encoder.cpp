#include "engine/channel_encoder.h"

#include "base/clock.h"
#include "base/log.h"
#include "recording/encoded_session.h"
#include "recording/stream_recorder.h"

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

using namespace std::chrono_literals;

constexpr auto kWatchInterval = 1s;
constexpr auto kShortDelay = 200ms; // not waited for, deliberately

DWORD delayOf(const RecordingOptions& options) {
    const auto delay = options.splitDelay;
    return delay > kShortDelay ? static_cast<DWORD>(delay.count()) : 0;
}

} // namespace

ChannelEncoder::ChannelEncoder(AudioLibrary& library,
                               StreamRecorder& recorder,
                               std::function<QString(int)> errorText)
    : m_library(library), m_recorder(recorder), m_errorText(std::move(errorText)),
      m_holder(library) {
    m_library.SetEncodeRewriteProc(&ChannelEncoder::onRewrite);
    m_watch.setInterval(kWatchInterval);
    connect(&m_watch, &QTimer::timeout, this, &ChannelEncoder::check);
}

ChannelEncoder::~ChannelEncoder() {
    finish();
}

void ChannelEncoder::start(const RecordingOptions& options, const Song& song, DWORD channel) {
    finish();
    m_watch.start();
    bool hasBegun = true;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const QWORD taken = m_library.StreamGetFilePosition(channel, BASS_FILEPOS_CURRENT);
        const qint64 decoded = taken == ~QWORD{0} ? 0 : static_cast<qint64>(taken);
        const PastStream past = m_recorder.startEncoded(options, song, decoded);
        m_options = options;
        m_song = song;
        m_awaited.reset();
        m_isActive = true;
        m_isPaused = false;
        m_isBetween = false;
        m_leaving.clear();
        m_titles.clear();
        m_unwanted = 0;
        if (channel != 0 && !past.bytes.isEmpty())
            beginPast(past);
        if (m_push != 0)
            channel = m_push;
        if (channel != 0)
            hasBegun = begin(channel);
        if (m_push != 0 && hasBegun) {
            for (const Song& title : past.titles)
                takeTitle(title);
            m_library.ChannelPlay(m_push, false);
        }
    }
    if (!hasBegun)
        stop();
}

/// With the mutex held, so that the next bytes come behind these.
void ChannelEncoder::beginPast(const PastStream& past) {
    m_push = m_library.StreamCreatePush(past.bytes.constData(),
                                        static_cast<QWORD>(past.bytes.size()),
                                        static_cast<QWORD>(past.begin));
    if (m_push == 0)
        return; // it begins with what is decoded next
    m_song = past.song;
    m_pushed = past.bytes.size();
    m_pushEnd = past.end;
    m_pushOffset = past.connectionOffset;
    qCInfo(lcEngine,
           "encoder begins in the buffer bytes=%lld",
           static_cast<long long>(m_pushed - past.begin));
}

/// False: no encoder; the recorder knows why.
bool ChannelEncoder::begin(DWORD channel) {
    EncoderRequest request;
    request.channel = channel;
    request.encoder = m_options.encoder;
    request.bitrate = m_options.encodingBitrate;
    request.mode = m_options.encodingMode;
    request.params = m_options.encoderParams;
    request.userArguments = m_options.encoderArguments;
    request.proc = &ChannelEncoder::onBytes;
    request.user = this;
    request.outputPath = m_options.folder;
    request.errorText = m_errorText;
    const auto started = startEncoder(m_library, request);
    if (const auto* const error = std::get_if<RecordingError>(&started)) {
        m_recorder.feedEncoded([error = *error](EncodedSession& files) { files.fail(error); }, 0);
        return false;
    }
    m_holder.setEncoder(std::get<HENCODE>(started));
    keepChannel(channel);
    if (m_isPaused)
        m_library.Encode_SetPaused(m_holder.encoder(), true);
    nameFile(m_holder.encoder(), m_song);
    m_fileBegan = SystemClock().steady();
    return true;
}

/// A station may stay away longer than what has come of it is heard: the encoder waits on the
/// channel, which would free itself, and the encoder with it.
void ChannelEncoder::keepChannel(DWORD channel) {
    if (m_push == 0)
        m_library.ChannelFlags(channel, 0, BASS_STREAM_AUTOFREE);
}

void ChannelEncoder::nameFile(HENCODE encoder, const Song& song) {
    m_recorder.feedEncoded(
        [encoder, song](EncodedSession& files) { files.beginFile(encoder, song); }, 0);
}

void ChannelEncoder::setChannel(DWORD channel) {
    bool hasBegun = true;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_isActive)
            return;
        m_isBetween = false;
        if (m_push != 0)
            m_recorder.feedEncoded([](EncodedSession& files) { files.connectionBack(); }, 0);
        else if (m_holder.encoder() == 0)
            hasBegun = begin(channel);
        else
            moveTo(channel);
    }
    if (!hasBegun)
        stop();
}

void ChannelEncoder::moveTo(DWORD channel) {
    m_recorder.feedEncoded([](EncodedSession& files) { files.connectionBack(); }, 0);
    keepChannel(channel);
    if (!m_library.Encode_SetChannel(m_holder.encoder(), channel))
        qCWarning(lcEngine, "encoder lost its channel error=%d", m_library.ErrorGetCode());
    if (const auto song = std::exchange(m_awaited, std::nullopt))
        cutBefore(*song);
}

void ChannelEncoder::setPaused(bool isPaused) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isPaused = isPaused;
    if (m_isActive && m_holder.encoder() != 0)
        m_library.Encode_SetPaused(m_holder.encoder(), isPaused);
}

void ChannelEncoder::connectionLost() {
    if (isActive())
        m_recorder.feedEncoded([](EncodedSession& files) { files.connectionLost(); }, 0);
}

void ChannelEncoder::stop() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_isActive)
            return;
        m_isActive = false;
        if (m_push != 0) {
            m_library.StreamPutEnd(m_push); // ends the encoder behind its last byte
            m_holder.cutTo(0);
        } else {
            m_holder.stop();
        }
    }
    m_watch.stop();
    m_recorder.stop();
}

void ChannelEncoder::finish() {
    stop();
    DWORD pushed = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        pushed = std::exchange(m_push, 0);
    }
    if (pushed != 0)
        m_library.StreamFree(pushed);
}

bool ChannelEncoder::isActive() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isActive;
}

// --- network thread

void ChannelEncoder::connectionEnded() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isBetween = m_isActive && m_push == 0 && m_holder.encoder() != 0;
    for (Title& title : m_titles)
        title.place = m_push == 0 ? 0 : title.place; // the next channel counts anew
}

void ChannelEncoder::connectionBegan() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_isActive || m_push == 0)
        return;
    m_library.StreamPutGap(m_push);
    m_pushOffset = m_pushed;
}

void ChannelEncoder::audioBytes(const char* data, qint64 bytes, qint64 end) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_isActive || m_push == 0 || end <= m_pushEnd)
        return; // or the buffer had them already
    m_library.StreamPutData(m_push, data, static_cast<QWORD>(bytes));
    m_pushed += bytes;
    m_pushEnd = end;
}

/// The song's place in what is encoded.
QWORD ChannelEncoder::placeOf(const Song& song) const {
    const qint64 offset = m_push != 0 ? m_pushOffset : 0;
    return static_cast<QWORD>(std::max<qint64>(0, song.position + offset));
}

void ChannelEncoder::cutAt(const Song& song) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    takeTitle(song);
}

void ChannelEncoder::takeTitle(const Song& song) {
    if (!m_isActive || m_unwanted != 0)
        return;
    if (m_options.mode == RecordMode::NoSplit) {
        m_song = song;
        if (m_holder.encoder() != 0)
            m_titles.push_back({song, placeOf(song)});
    } else if (m_holder.encoder() == 0)
        m_song = song;
    else if (m_isBetween)
        m_awaited = song; // its place is one of a channel that this encoder is not on
    else
        cutBefore(song);
}

void ChannelEncoder::cutBefore(const Song& song) {
    // a station that comes back says again what it plays
    if (song.track == m_song.track)
        return;
    const bool isLast = m_options.mode == RecordMode::SingleSong && !m_song.isEmpty();
    m_song = song;
    const HENCODE old = m_holder.encoder();
    const HENCODE next = goOnInNext(placeOf(song), delayOf(m_options));
    if (next == 0) {
        // one cut is waited for already; its file gets the newest name
        nameFile(old, song);
        return;
    }
    if (isLast)
        m_unwanted = next;
    else
        nameFile(next, song);
}

/// 0: a cut is waited for already.
HENCODE ChannelEncoder::goOnInNext(QWORD position, DWORD delayMs) {
    const HENCODE old = m_holder.encoder();
    const HENCODE next =
        m_library.Encode_CutAt(old, position, delayMs, &ChannelEncoder::onBytes, this);
    if (next == 0)
        return 0;
    m_leaving.insert(old);
    m_holder.cutTo(next);
    m_fileBegan = SystemClock().steady();
    return next;
}

// --- an encoder's thread

void ChannelEncoder::onBytes(
    HENCODE encoder, DWORD /*channel*/, const void* data, DWORD size, void* user) {
    auto* const self = static_cast<ChannelEncoder*>(user);
    if (size == 0)
        self->ended(encoder);
    else
        self->bytesCame(encoder, data, size);
}

void ChannelEncoder::bytesCame(HENCODE encoder, const void* data, DWORD size) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (encoder == m_unwanted)
            return;
    }
    const QByteArray bytes(static_cast<const char*>(data), static_cast<int>(size));
    const double seconds = m_library.Encode_GetSeconds(encoder);
    m_recorder.feedEncoded(
        [encoder, bytes, seconds](EncodedSession& files) {
            files.append(encoder, bytes);
            files.tellSeconds(encoder, seconds);
        },
        bytes.size());
    tellTitles(encoder);
}

/// Titles whose first sample has been encoded. The library is asked without the mutex: the answer
/// may wait for the decoder.
void ChannelEncoder::tellTitles(HENCODE encoder) {
    for (;;) {
        QWORD place = 0;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (m_titles.empty() || m_isBetween || m_holder.encoder() != encoder)
                return;
            place = m_titles.front().place;
        }
        const double seconds = m_library.Encode_GetSecondsAt(encoder, place);
        if (seconds < 0 && m_library.Encode_GetSeconds(encoder) >= 0)
            return; // not yet
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_titles.empty() || m_titles.front().place != place)
            continue;
        m_recorder.feedEncoded([song = m_titles.front().song,
                                seconds](EncodedSession& files) { files.noteTitle(song, seconds); },
                               0);
        m_titles.pop_front();
    }
}

void ChannelEncoder::onRewrite(
    HENCODE encoder, DWORD /*channel*/, const void* data, DWORD size, QWORD offset, void* user) {
    const QByteArray bytes(static_cast<const char*>(data), static_cast<int>(size));
    static_cast<ChannelEncoder*>(user)->m_recorder.feedEncoded(
        [encoder, bytes, at = static_cast<qint64>(offset)](EncodedSession& files) {
            files.rewrite(encoder, at, bytes);
        },
        bytes.size());
}

void ChannelEncoder::ended(HENCODE encoder) {
    bool isFailure = false;
    bool isOver = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const bool wasCut = m_leaving.erase(encoder) > 0;
        isFailure = m_isActive && !wasCut;
        isOver = m_isActive && (isFailure || m_unwanted != 0);
    }
    const double seconds = m_library.Encode_GetSeconds(encoder);
    m_recorder.feedEncoded(
        [encoder, isFailure, seconds](EncodedSession& files) {
            files.tellSeconds(encoder, seconds);
            files.endFile(encoder, isFailure);
        },
        0);
    // the owner's thread ends the rest: an encoder must not be stopped from its own callback
    if (isOver)
        QMetaObject::invokeMethod(this, &ChannelEncoder::stop, Qt::QueuedConnection);
}

void ChannelEncoder::check() {
    if (hasStopped()) {
        stop();
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_isActive && m_holder.encoder() != 0)
        splitByTime();
}

/// A library that does not tell the end of an encoder is asked, without the mutex: the answer may
/// wait for the decoder, and the network thread must not.
bool ChannelEncoder::hasStopped() {
    HENCODE encoder = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        encoder = m_isActive ? m_holder.encoder() : 0;
    }
    if (encoder == 0 || m_library.Encode_IsActive(encoder) != BASS_ACTIVE_STOPPED)
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_isActive || m_holder.encoder() != encoder)
        return false; // a cut has ended it meanwhile
    m_recorder.feedEncoded([encoder](EncodedSession& files) { files.endFile(encoder, true); }, 0);
    return true;
}

/// Parts of a recording that is not split by its titles, to the second of the watch.
void ChannelEncoder::splitByTime() {
    const bool isWanted = m_options.mode == RecordMode::NoSplit && m_options.splitEvery.count() > 0;
    if (!isWanted || m_isPaused || m_isBetween ||
        SystemClock().steady() - m_fileBegan < m_options.splitEvery)
        return;
    constexpr QWORD kAtOnce = 0; // every place that has been decoded is behind it
    if (const HENCODE next = goOnInNext(kAtOnce, 0); next != 0)
        nameFile(next, m_song);
}

} // namespace BASS
