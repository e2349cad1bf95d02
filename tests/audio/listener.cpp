#include "audio/listener.h"

#include <algorithm>
#include <cstdlib>
#include <thread>

using namespace BASS;

Listener::Listener(int speed) {
    if (qEnvironmentVariableIsEmpty("SDL_AUDIODRIVER"))
        qputenv("SDL_AUDIODRIVER", "dummy");
    qputenv("WAVELARK_NULL_SPEED", QByteArray::number(speed));
    m_library.SetTitleProc(&Listener::onTitle);
    m_library.Init(-1, 44100, 0);
    m_library.SetConfig(BASS_CONFIG_NET_PREBUF, 0);
}

Listener::~Listener() {
    m_library.Free(); // no callback after this, so the lists below may go
}

HSTREAM Listener::open(const std::string& url, Create create, DWORD flags) {
    const HSTREAM stream = (m_library.*create)(url.c_str(), 0, flags, &Listener::onDownload, this);
    if (stream != 0)
        setSyncs(stream);
    return stream;
}

HSTREAM Listener::openFile(const QString& path, CreateFile create) {
    const HSTREAM stream = (m_library.*create)(path.utf16(), BASS_UNICODE);
    if (stream != 0)
        setSyncs(stream);
    return stream;
}

void Listener::setSyncs(HSTREAM stream) {
    const auto set = [this, stream](DWORD type, SYNCPROC* proc) {
        m_library.ChannelSetSync(stream, type, 0, proc, this);
    };
    set(BASS_SYNC_END, &Listener::onSync<BASS_SYNC_END>);
    set(BASS_SYNC_META, &Listener::onSync<BASS_SYNC_META>);
    set(BASS_SYNC_OGG_CHANGE, &Listener::onSync<BASS_SYNC_OGG_CHANGE>);
    set(BASS_SYNC_HLS_SEGMENT, &Listener::onSync<BASS_SYNC_HLS_SEGMENT>);
    set(BASS_SYNC_STALL, &Listener::onSync<BASS_SYNC_STALL>);
    set(BASS_SYNC_DOWNLOAD, &Listener::onSync<BASS_SYNC_DOWNLOAD>);
    set(BASS_SYNC_SLIDE, &Listener::onSync<BASS_SYNC_SLIDE>);
}

bool Listener::waitFor(DWORD type, DWORD data) {
    return waitUntil([this, type, data] {
        return std::any_of(syncs.begin(), syncs.end(), [type, data](const Sync& sync) {
            return sync.type == type && sync.data == data;
        });
    });
}

void Listener::onDownload(const void* buffer, DWORD length, void* user) {
    auto* const self = static_cast<Listener*>(user);
    const std::lock_guard lock(self->m_mutex);
    const char* const data = static_cast<const char*>(buffer);
    if (data == nullptr)
        ++self->ends;
    else if (length > 0)
        self->bytes.append(data, static_cast<int>(length));
    else
        for (const char* line = data; *line != '\0'; line += qstrlen(line) + 1)
            self->headers += QByteArray(line) + '\n';
    self->m_changed.notify_all();
}

void Listener::onTitle(const StreamTitle& title, void* user) {
    auto* const self = static_cast<Listener*>(user);
    const std::lock_guard lock(self->m_mutex);
    self->titles.push_back({title.position,
                            static_cast<quint64>(self->bytes.size()),
                            std::string(title.data, title.length)});
    self->m_changed.notify_all();
}

template <DWORD type>
void Listener::onSync(HSYNC /*sync*/, DWORD channel, DWORD data, void* user) {
    auto* const self = static_cast<Listener*>(user);
    AudioLibrary& library = self->m_library;
    const char* const meta = library.ChannelGetTags(channel, BASS_TAG_META);
    const char* const ogg = library.ChannelGetTags(channel, BASS_TAG_OGG);
    const double seconds =
        library.ChannelBytes2Seconds(channel, library.ChannelGetPosition(channel, BASS_POS_BYTE));
    const std::lock_guard lock(self->m_mutex);
    self->syncs.push_back(
        {type, data, meta != nullptr ? meta : "", ogg != nullptr ? ogg : "", seconds});
    self->m_changed.notify_all();
}

int settled(int (*count)(), int limit) {
    for (int n = 0; n < 2000 && count() > limit; ++n)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return count();
}
