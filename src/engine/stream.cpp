#include "engine/stream.h"

#include "base/log.h"
#include "engine/engine_events.h"
#include "engine/title_decoder.h"
#include "engine/track_change.h"

#include <QMetaObject>

namespace BASS {

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
}

void Stream::titleArrived(const StreamTitle& title) {
    std::optional<Song> song;
    bool isNew = false;
    {
        const std::lock_guard lock(m_stationMutex);
        song = title.tagType == BASS_TAG_OGG
                   ? decodeCommentList(title.data)
                   : decodeIcyBlock(QByteArray(title.data, static_cast<int>(title.length)),
                                    m_codePage);
        if (!song)
            return;
        song->position = static_cast<qint64>(title.position);
        isNew = isNewTrack(m_arrivedSong, *song, {m_stationName, m_headers.name});
        if (isNew)
            m_arrivedSong = *song;
    }
    if (isNew)
        OnSplitFile(*song);
}

void Stream::readTags(DWORD channel) {
    const char* block = library().ChannelGetTags(channel, BASS_TAG_META);
    std::optional<Song> song;
    if (block != nullptr) {
        const std::lock_guard lock(m_stationMutex);
        song = decodeIcyBlock(QByteArray(block), m_codePage);
    } else {
        song = decodeCommentList(library().ChannelGetTags(channel, BASS_TAG_OGG));
    }
    if (song && !song->isEmpty())
        m_song = *song;
}

bool Stream::isTrackChange(const Song& previous, const Song& song) {
    const std::lock_guard lock(m_stationMutex);
    return isNewTrack(previous, song, {m_stationName, m_headers.name});
}

} // namespace BASS
