#include "engine/stream.h"

#include "base/clock.h"
#include "base/log.h"
#include "engine/engine_events.h"
#include "engine/metadata_fields.h"
#include "engine/title_decoder.h"
#include "engine/track_change.h"

#include <QMetaObject>

#include <cstring>

namespace BASS {
namespace {

bool isCommentList(DWORD tagType) {
    return tagType == BASS_TAG_OGG || tagType == BASS_TAG_WMA || tagType == BASS_TAG_MP4;
}

/// The whole list, with the zeros inside it.
QByteArray commentList(const char* list) {
    const char* end = list;
    while (*end != '\0')
        end += std::strlen(end) + 1;
    return QByteArray(list, static_cast<int>(end - list));
}

} // namespace

Stream::Stream(std::shared_ptr<AudioLibrary> audioLibrary, QObject* parent)
    : BassQt(std::move(audioLibrary), parent) {
    library().SetTitleProc(&ConnectSequence::titleProc);
}

Stream::~Stream() {
    endWorkers();
    library().SetTitleProc(nullptr);
}

void Stream::endWorkers() {
    CancelConnect();
    const auto workers = findChildren<QtBassConnectThread*>(QString(), Qt::FindDirectChildrenOnly);
    for (QtBassConnectThread* worker : workers) {
        disconnect(worker, nullptr, this, nullptr);
        worker->sequence()->cancel();
        worker->wait();
        freeChannel({worker->sequence()->handle(), worker->sequence(), false});
        delete worker;
    }
}

void Stream::setStation(const StationRecord& station) {
    const std::lock_guard lock(m_stationMutex);
    m_codePage = codePageForCountry(station.country);
    m_stationName = station.name;
    m_headers = {};
    m_arrivedSong = {};
    m_damper.reset();
}

// --- connecting
// -----------------------------------------------------------------------------------

void Stream::startConnect(ConnectRequest request) {
    ClearConnect();
    ConnectReport report;
    // the worker's words travel to the GUI thread; a canceled connect has nothing to say any more
    report.status = [this](const QString& text, bool isImportant) {
        QMetaObject::invokeMethod(
            this,
            [this, text, isImportant] {
                AddLog(text, false);
                onStatusLine(text, isImportant);
            },
            Qt::QueuedConnection);
    };
    report.log = [this](const QString& text, bool isError) { AddLog(text, isError); };
    report.createBegins = [this](StreamKind kind) {
        Notify(kNotifyCreateBegins, static_cast<int>(kind));
    };
    m_connect =
        std::make_shared<ConnectSequence>(library(), std::move(request), std::move(report), *this);
    auto* thread = new QtBassConnectThread(m_connect, this);
    connect(thread, &QThread::finished, this, [this, thread] { connectThreadFinished(thread); });
    thread->start();
}

void Stream::CancelConnect() {
    CBass::CancelConnect();
    if (m_connect == nullptr)
        return;
    m_connect->detachSink();
    m_connect->cancel();
    m_connect.reset();
}

void Stream::connectThreadFinished(QtBassConnectThread* thread) {
    const std::shared_ptr<ConnectSequence> sequence = thread->sequence();
    thread->wait();
    thread->deleteLater();
    if (sequence != m_connect) {
        // canceled after its channel was made, before it could see it
        freeChannel({sequence->handle(), sequence, false});
        return;
    }
    m_connect.reset();
    if (sequence->handle() != 0)
        onConnected({sequence->handle(), sequence, isLiveStream(*sequence)});
    else
        onConnectFailed(*sequence);
}

bool Stream::isLiveStream(const ConnectSequence& connect) const {
    if (connect.isLocalFile())
        return false;
    const QWORD length = library().StreamGetFilePosition(connect.handle(), BASS_FILEPOS_END);
    return length == ~QWORD{0} || length == 0;
}

void Stream::freeChannel(Channel channel) {
    if (channel.connect != nullptr)
        channel.connect->detachSink();
    if (channel.handle != 0)
        library().StreamFree(channel.handle);
}

// --- titles
// ---------------------------------------------------------------------------------------

StreamHeaders Stream::streamHeaders() const {
    const std::lock_guard lock(m_stationMutex);
    return m_headers;
}

Song Stream::arrivedSong() const {
    const std::lock_guard lock(m_stationMutex);
    return m_arrivedSong;
}

void Stream::connectionBegan(const char* headers) {
    StreamHeaders parsed = parseStreamHeaders(headers);
    const std::lock_guard lock(m_stationMutex);
    m_headers = std::move(parsed);
    m_hasOwnTitles = false;
}

void Stream::titleArrived(const StreamTitle& title) {
    std::optional<Song> song;
    bool isNew = false;
    {
        const std::lock_guard lock(m_stationMutex);
        song = songOf(title.tagType, QByteArray(title.data, static_cast<int>(title.length)));
        // what the stream itself says is worth more than what its playlist says
        m_hasOwnTitles = m_hasOwnTitles || title.tagType != BASS_TAG_HLS_EXTINF;
        if (!song || (title.tagType == BASS_TAG_HLS_EXTINF && m_hasOwnTitles))
            return;
        song->position = static_cast<qint64>(title.position);
        const auto now = SystemClock().steady();
        isNew = isNewTrack(m_arrivedSong, *song, {m_stationName, m_headers.name}) &&
                !m_damper.isInterjection(song->track, now);
        if (isNew) {
            m_arrivedSong = *song;
            m_damper.accept(song->track, now);
        }
    }
    if (isNew)
        OnSplitFile(*song);
}

void Stream::readTags(DWORD channel) {
    for (const DWORD type :
         {BASS_TAG_META, BASS_TAG_OGG, BASS_TAG_WMA, BASS_TAG_MP4, BASS_TAG_HLS_EXTINF}) {
        const char* const text = library().ChannelGetTags(channel, type);
        if (text == nullptr)
            continue;
        const std::lock_guard lock(m_stationMutex);
        const std::optional<Song> song =
            songOf(type, isCommentList(type) ? commentList(text) : QByteArray(text));
        if (song && !song->isEmpty())
            m_song = *song;
        return;
    }
}

std::optional<Song> Stream::songOf(DWORD tagType, const QByteArray& text) const {
    if (tagType == BASS_TAG_HLS_EXTINF)
        return songFromSegmentInfo(text);
    if (isCommentList(tagType))
        return decodeCommentList((text + '\0').constData()); // an empty entry ends the list
    return decodeIcyBlock(text, m_codePage);
}

bool Stream::isTrackChange(const Song& previous, const Song& song) {
    const std::lock_guard lock(m_stationMutex);
    return isNewTrack(previous, song, {m_stationName, m_headers.name});
}

} // namespace BASS
