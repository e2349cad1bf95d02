#include "audio/bass/bass_library.h"
#include "audio/bass/bass_text.h"

namespace BASS {

HSTREAM BassLibrary::StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl(m_bass.StreamCreateURL, {url, offset, flags, proc, user});
}

HSTREAM BassLibrary::MP4_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    // the add-on's function for addresses takes both of its formats
    const CreateUrl& create = m_bass.Mp4Url.isBound() ? m_bass.Mp4Url : m_bass.AacUrl;
    return createUrl(create, {url, offset, flags, proc, user});
}

HSTREAM BassLibrary::FLAC_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl(m_bass.FlacUrl, {url, offset, flags, proc, user});
}

HSTREAM BassLibrary::HLS_StreamCreateURL(
    const void* url, DWORD /*offset*/, DWORD flags, DOWNLOADPROC* proc, void* user) {
    if (url == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    const std::u16string text = wideText(url, flags);
    void* const token = beginStream(proc, user);
    return endStream(
        token, m_bass.HlsUrlStream(text.c_str(), flags | BASS_UNICODE, &onBassDownload, token));
}

HSTREAM BassLibrary::OPUS_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    return createUrl(m_bass.OpusUrl, {url, offset, flags, proc, user});
}

HSTREAM BassLibrary::WMA_StreamCreateURL(
    const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) {
    if (m_bass.WmaUrl.isBound())
        return createUrl(m_bass.WmaUrl, {url, offset, flags, proc, user});
    // older add-ons take an address as a file: it plays, but its bytes are not handed out
    return createFile(m_bass.WmaFile, url, flags & ~BASS_STREAM_STATUS);
}

HSTREAM BassLibrary::createUrl(const CreateUrl& create, const UrlArguments& arguments) {
    if (arguments.url == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    const std::u16string text = wideText(arguments.url, arguments.flags);
    void* const token = beginStream(arguments.proc, arguments.user);
    const DWORD flags = arguments.flags | BASS_UNICODE;
    return endStream(token, create(text.c_str(), arguments.offset, flags, &onBassDownload, token));
}

HSTREAM BassLibrary::createFile(const CreateFile& create, const void* file, DWORD flags) {
    if (file == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    const std::u16string path = widePath(file, flags);
    void* const token = beginStream(nullptr, nullptr);
    return endStream(token, create(0, path.c_str(), 0, 0, flags | BASS_UNICODE));
}

void* BassLibrary::beginStream(DOWNLOADPROC* proc, void* user) {
    auto stream = std::make_shared<BassStream>();
    stream->bass = &m_bass;
    stream->download = proc;
    stream->title = proc != nullptr ? m_titleProc.load() : nullptr;
    stream->user = user;
    return bassStreams().add(std::move(stream));
}

HSTREAM BassLibrary::endStream(void* token, HSTREAM handle) {
    const Stream stream = bassStreams().find(token);
    if (handle == 0) {
        stream->gate.close();
        bassStreams().remove(token);
        return 0;
    }
    stream->handle = handle;
    if (stream->isCanceled) {
        closeStream(handle);
        m_bass.StreamFree(handle);
        fail(BASS_ERROR_TIMEOUT);
        return 0;
    }
    m_bass.ChannelSetSync(handle, BASS_SYNC_FREE | BASS_SYNC_MIXTIME, 0, &onBassFreed, token);
    watchTitles(stream, token);
    {
        const std::lock_guard lock(m_effectsMutex);
        setEffects(*stream, token, m_effects);
    }
    setOwnBassError(BASS_OK);
    return handle;
}

void BassLibrary::watchTitles(const Stream& stream, void* token) {
    if (stream->title == nullptr)
        return;
    for (const DWORD type : {BASS_SYNC_META, BASS_SYNC_OGG_CHANGE})
        m_bass.ChannelSetSync(stream->handle, type | BASS_SYNC_MIXTIME, 0, &onBassTitle, token);
    // what came while the stream was made came before there was anything to tell it to
    const bool isIcy = m_bass.ChannelGetTags(stream->handle, BASS_TAG_META) != nullptr;
    passBassTitle(*stream, isIcy ? BASS_TAG_META : BASS_TAG_OGG, 0);
}

bool BassLibrary::StreamCancel(void* user) {
    const auto [token, stream] = bassStreams().findIf([this, user](const BassStream& candidate) {
        return candidate.bass == &m_bass && candidate.user == user && candidate.handle == 0;
    });
    if (stream == nullptr)
        return fail(BASS_ERROR_NOTAVAIL);
    stream->isCanceled = true;
    if (m_bass.StreamCancel.isBound())
        m_bass.StreamCancel(token);
    return true;
}

HSTREAM BassLibrary::StreamCreateFile(const void* file, DWORD flags) {
    return createFile(m_bass.StreamCreateFile, file, flags);
}

HSTREAM BassLibrary::AAC_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(m_bass.AacFile, file, flags);
}

HSTREAM BassLibrary::WMA_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(m_bass.WmaFile, file, flags);
}

HSTREAM BassLibrary::OPUS_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(m_bass.OpusFile, file, flags);
}

HSTREAM BassLibrary::FLAC_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(m_bass.FlacFile, file, flags);
}

HSTREAM BassLibrary::MP4_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(m_bass.Mp4File, file, flags);
}

HSTREAM BassLibrary::HLS_StreamCreateFile(const void* file, DWORD flags) {
    return createFile(m_bass.HlsFile, file, flags);
}

std::pair<void*, BassLibrary::Stream> BassLibrary::streamOf(HSTREAM handle) const {
    return bassStreams().findIf([this, handle](const BassStream& candidate) {
        return candidate.bass == &m_bass && candidate.handle == handle;
    });
}

/// No callback of the stream runs or starts any more, and its encoders are complete.
void BassLibrary::closeStream(HSTREAM handle) {
    m_encoders.endChannel(handle);
    const auto [token, stream] = streamOf(handle);
    if (stream == nullptr)
        return;
    stream->gate.close();
    bassSyncs().removeIf(
        [&gone = *stream](const BassSync& sync) { return sync.stream.get() == &gone; });
    bassStreams().remove(token);
}

HSTREAM BassLibrary::StreamCreateRecordingDevice(int /*device*/, DWORD /*flags*/) {
    fail(BASS_ERROR_NOTAVAIL);
    return 0;
}

bool BassLibrary::RecordGetDeviceInfo(DWORD /*device*/, BASS_DEVICEINFO* /*info*/) {
    return fail(BASS_ERROR_NOTAVAIL);
}

bool BassLibrary::StreamFree(HSTREAM handle) {
    closeStream(handle);
    return m_bass.StreamFree(handle) != 0;
}

QWORD BassLibrary::StreamGetFilePosition(HSTREAM handle, DWORD mode) {
    return m_bass.StreamGetFilePosition(handle, mode);
}

} // namespace BASS
