#include "audio/ffmpeg/stream_channel.h"

#include "audio/ffmpeg/file_input.h"
#include "audio/ffmpeg/http_transfer.h"
#include "audio/ffmpeg/mixer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace BASS {
namespace {

DWORD typeOf(StreamFormat format, const LinkDecoder::Info& audio) {
    switch (format) {
    case StreamFormat::Mpeg:
        return audio.layer == 1   ? BASS_CTYPE_STREAM_MP1
               : audio.layer == 2 ? BASS_CTYPE_STREAM_MP2
                                  : BASS_CTYPE_STREAM_MP3;
    case StreamFormat::Adts:
        return BASS_CTYPE_STREAM_AAC;
    case StreamFormat::OggVorbis:
        return BASS_CTYPE_STREAM_OGG;
    case StreamFormat::OggOpus:
        return BASS_CTYPE_STREAM_OPUS;
    case StreamFormat::OggFlac:
        return BASS_CTYPE_STREAM_FLAC_OGG;
    case StreamFormat::Flac:
        return BASS_CTYPE_STREAM_FLAC;
    case StreamFormat::Mp4:
        return BASS_CTYPE_STREAM_MP4;
    case StreamFormat::Wav:
        return audio.isFloat ? BASS_CTYPE_STREAM_WAV_FLOAT : BASS_CTYPE_STREAM_WAV_PCM;
    case StreamFormat::Aiff:
        return BASS_CTYPE_STREAM_AIFF;
    case StreamFormat::Asf:
        return BASS_CTYPE_STREAM_WMA;
    case StreamFormat::None:
        break;
    }
    return BASS_CTYPE_STREAM;
}

/// What tells that a tag of this type is heard.
DWORD syncOf(DWORD tagType) {
    switch (tagType) {
    case BASS_TAG_OGG:
        return BASS_SYNC_OGG_CHANGE;
    case BASS_TAG_WMA:
        return BASS_SYNC_WMA_META;
    case BASS_TAG_HLS_EXTINF:
        return BASS_SYNC_HLS_SEGMENT;
    default:
        return BASS_SYNC_META;
    }
}

bool isIcyLine(const std::string& line) {
    return line.size() > 4 && (line[0] == 'i' || line[0] == 'I') &&
           (line[1] == 'c' || line[1] == 'C') &&
           (line[2] == 'y' || line[2] == 'Y' || line[2] == 'e' || line[2] == 'E') && line[3] == '-';
}

std::string headerBlock(const HttpHeaders& headers, bool onlyIcy) {
    std::string result;
    for (const std::string& line : headers.lines) {
        if (!onlyIcy || isIcyLine(line))
            result += line + '\0';
    }
    return result;
}

} // namespace

StreamChannel::StreamChannel(const Context& context)
    : m_context(context), m_flags(context.flags),
      m_voice(static_cast<std::uint32_t>(context.rate), *context.signal), m_syncs(context.handle),
      m_effects(context.rate), m_pcmTap(context.rate) {}

StreamChannel::~StreamChannel() {
    close();
}

void StreamChannel::openUrl(const MakeSource& make,
                            StreamTap::Callbacks callbacks,
                            std::size_t bufferBytes,
                            std::function<bool(StreamFormat)> accepts) {
    callbacks.ended = [this] { post(BASS_SYNC_DOWNLOAD, 0); };
    m_tap = std::make_shared<StreamTap>(std::move(callbacks), bufferBytes);
    m_source = make(m_tap);
    m_tap->fifo().setDrained([this] { m_source->resume(); });
    m_source->start();
    startWorker(m_tap->fifo(), std::move(accepts));
}

bool StreamChannel::openFile(const std::filesystem::path& path,
                             std::function<bool(StreamFormat)> accepts) {
    auto file = std::make_unique<FileInput>(path);
    if (!file->isOpen())
        return false;
    m_file = std::move(file);
    startWorker(*m_file, std::move(accepts));
    return true;
}

void StreamChannel::openCapture(std::unique_ptr<DecoderInput> input) {
    m_isCapture = true;
    m_file = std::move(input);
    startWorker(*m_file, [](StreamFormat) { return true; });
}

void StreamChannel::startWorker(DecoderInput& input, std::function<bool(StreamFormat)> accepts) {
    DecodeWorker::Callbacks callbacks;
    callbacks.ready = [this](int error) { becomeReady(error); };
    callbacks.title = [this](TagTimeline::Entry entry) { addTitle(std::move(entry)); };
    callbacks.accepts = std::move(accepts);
    callbacks.isUnheard = [this] { return isUnheard(); };
    callbacks.isAdjusted = [this] { return m_effects.isBeingAdjusted(); };
    callbacks.pcm = [this](std::vector<float>& samples, std::uint64_t position) {
        m_effects.process(samples.data(), samples.size() / Voice::kChannels);
        if (m_pcmTap.isUsed())
            m_pcmTap.feed(samples.data(), samples.size() / Voice::kChannels, position);
    };
    if (m_isPushed) {
        callbacks.isUnheard = {};
        callbacks.isAdjusted = {};
        callbacks.title = [](const TagTimeline::Entry&) {};
        callbacks.ended = [this] { pushedEnded(); };
        callbacks.pcm = [this](std::vector<float>& samples, std::uint64_t position) {
            pushedAudio(samples, position);
        };
    }
    callbacks.contentType = [this] {
        return m_tap ? m_tap->headers().value("content-type") : std::string();
    };
    m_worker = std::make_unique<DecodeWorker>(input, m_voice, m_context.rate, std::move(callbacks));
    m_worker->start();
}

DWORD StreamChannel::setFlags(DWORD flags, DWORD mask) {
    DWORD now = m_flags.load();
    while (!m_flags.compare_exchange_weak(now, (now & ~mask) | (flags & mask))) {
    }
    return m_flags.load();
}

/// Muted, and no encoder wants it: only the clock and the titles matter.
bool StreamChannel::isUnheard() const {
    const bool isMuted = m_context.mixer->globalVolume() == 0 || m_voice.isMuted();
    return isMuted && m_voice.mode() == Voice::Mode::Playing && !m_pcmTap.isUsed();
}

void StreamChannel::becomeReady(int error) {
    if (error == BASS_OK && !m_isPushed && !m_context.mixer->add(m_voice))
        error = BASS_ERROR_MEM;
    const std::lock_guard lock(m_mutex);
    if (m_isReady)
        return;
    m_isReady = true;
    m_error = error;
    m_readyChanged.notify_all();
}

int StreamChannel::waitReady(std::chrono::seconds limit) {
    std::unique_lock lock(m_mutex);
    if (!m_readyChanged.wait_for(lock, limit, [this] { return m_isReady; }))
        return BASS_ERROR_TIMEOUT;
    return m_error;
}

void StreamChannel::cancel() {
    const std::lock_guard lock(m_mutex);
    if (m_isReady)
        return;
    m_isReady = true;
    m_error = BASS_ERROR_FILEOPEN;
    m_readyChanged.notify_all();
}

void StreamChannel::close() {
    waitForPushed();
    {
        const std::lock_guard lock(m_mutex);
        if (m_isClosed)
            return;
        m_isClosed = true;
    }
    m_pushChanged.notify_all();
    m_syncs.close();
    if (m_tap) {
        m_tap->closeGate();
        m_tap->fifo().abort();
        if (m_source)
            m_source->stop();
    }
    if (m_worker)
        m_worker->stop();
    m_context.mixer->remove(m_voice);
}

DWORD StreamChannel::activity() const {
    switch (m_voice.mode()) {
    case Voice::Mode::Stopped:
        return BASS_ACTIVE_STOPPED;
    case Voice::Mode::Paused:
        return BASS_ACTIVE_PAUSED;
    case Voice::Mode::Playing:
        break;
    }
    if (m_voice.hasEnded())
        return BASS_ACTIVE_STOPPED;
    return m_voice.isStalled() ? BASS_ACTIVE_STALLED : BASS_ACTIVE_PLAYING;
}

void StreamChannel::info(BASS_CHANNELINFO& out) const {
    const DecodeWorker::Info info = m_worker->info();
    out = {};
    out.freq = static_cast<DWORD>(info.audio.sampleRate);
    out.chans = static_cast<DWORD>(info.audio.channels);
    out.flags = flags();
    out.ctype = m_isCapture ? BASS_CTYPE_RECORD : typeOf(info.format, info.audio);
    out.origres = static_cast<DWORD>(std::max(0, info.audio.bits));
}

int StreamChannel::bitrate() const {
    return m_worker->info().audio.bitrate;
}

double StreamChannel::heardSeconds() const {
    return static_cast<double>(m_voice.heardFrame()) / m_context.rate;
}

double StreamChannel::duration() const {
    return m_worker->info().duration;
}

void StreamChannel::seek(double seconds) {
    m_worker->seek(seconds);
}

bool StreamChannel::jumpToLive() {
    const StreamFormat format = m_worker->info().format;
    const bool isEnterable = format != StreamFormat::Asf && format != StreamFormat::Mp4 &&
                             format != StreamFormat::Wav && format != StreamFormat::Aiff;
    if (!m_tap || m_tap->length() > 0 || !isEnterable)
        return false;
    constexpr std::size_t kKeptSeconds = 2; // less, and the first late packet is heard as a gap
    constexpr int kUsualBitrate = 128;
    const int rate = bitrate() > 0 ? bitrate() : kUsualBitrate;
    m_tap->fifo().skipToNewest(static_cast<std::size_t>(rate) * 1000 / 8 * kKeptSeconds);
    m_worker->discardDecoded();
    return true;
}

QWORD StreamChannel::bytes(double seconds) const {
    const LinkDecoder::Info audio = m_worker->info().audio;
    const auto frames = static_cast<QWORD>(std::llround(std::max(0.0, seconds) * audio.sampleRate));
    return frames * static_cast<QWORD>(audio.channels) * sizeof(float);
}

double StreamChannel::seconds(QWORD bytes) const {
    const LinkDecoder::Info audio = m_worker->info().audio;
    const double perSecond = 1.0 * audio.sampleRate * audio.channels * sizeof(float);
    return perSecond > 0.0 ? static_cast<double>(bytes) / perSecond : 0.0;
}

void StreamChannel::setVolume(float value) {
    const std::lock_guard lock(m_volumeMutex);
    m_voice.setVolume(value);
    m_voice.wakeDecoder(); // what was muted may be heard now
}

void StreamChannel::slideVolume(float value, DWORD milliseconds) {
    const std::lock_guard lock(m_volumeMutex);
    m_voice.slideVolume(value, milliseconds);
    m_voice.wakeDecoder();
}

void StreamChannel::addTitle(TagTimeline::Entry entry) {
    const std::lock_guard lock(m_mutex);
    if (!m_isReady) { // there is no one yet who could be told: it is simply there
        setTag(entry);
        return;
    }
    m_timeline.add(std::move(entry));
    m_voice.armTag(*m_timeline.next());
}

void StreamChannel::setTag(const TagTimeline::Entry& entry) {
    m_tags[entry.tagType] = entry.data;
}

const char* StreamChannel::tags(DWORD type) {
    std::string text;
    bool isThere = false;
    if (type == BASS_TAG_HTTP || type == BASS_TAG_ICY) {
        if (m_tap)
            text = headerBlock(m_tap->headers(), type == BASS_TAG_ICY);
        isThere = !text.empty();
    }
    const std::lock_guard lock(m_mutex);
    if (const auto tag = m_tags.find(type); tag != m_tags.end()) {
        text = tag->second;
        isThere = true;
    }
    if (!isThere)
        return nullptr;
    // what another thread has asked for stays where it is while it stays the same
    std::string& given = m_given[type];
    if (given != text)
        given = std::move(text);
    return given.c_str();
}

QWORD StreamChannel::filePosition(DWORD mode) const {
    constexpr QWORD kFailed = ~QWORD{0};
    const DecoderInput& input = m_tap ? static_cast<const DecoderInput&>(m_tap->fifo()) : *m_file;
    switch (mode) {
    case BASS_FILEPOS_CURRENT:
        return input.taken();
    case BASS_FILEPOS_DOWNLOAD:
        return input.received();
    case BASS_FILEPOS_END:
        return m_tap ? m_tap->length() : input.received();
    case BASS_FILEPOS_CONNECTED:
        return m_tap && !m_tap->fifo().isEnded() ? 1 : 0;
    case BASS_FILEPOS_BUFFER:
        return input.received() - input.taken();
    case BASS_FILEPOS_BUFFERING:
        return m_voice.missingPercent();
    default:
        return kFailed;
    }
}

void StreamChannel::post(DWORD type, DWORD data) {
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back({type, data});
    }
    m_context.signal->post();
}

HSYNC StreamChannel::addSync(DWORD type, QWORD param, SYNCPROC* proc, void* user) {
    const HSYNC handle = m_syncs.add(type, param, proc, user);
    repeatMissed();
    return handle;
}

/// A short stream may be here whole before the engine has set its syncs.
void StreamChannel::tellDownloadEnd() {
    if (m_syncs.has(BASS_SYNC_DOWNLOAD)) {
        m_syncs.fire(BASS_SYNC_DOWNLOAD, 0);
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_hasMissedEnd = true;
    }
    repeatMissed();
}

void StreamChannel::repeatMissed() {
    if (!m_syncs.has(BASS_SYNC_DOWNLOAD))
        return;
    {
        const std::lock_guard lock(m_mutex);
        if (!std::exchange(m_hasMissedEnd, false))
            return;
    }
    post(BASS_SYNC_DOWNLOAD, 0);
}

bool StreamChannel::dispatch() {
    const std::uint32_t events = m_voice.takeEvents();
    std::deque<Event> posted;
    {
        const std::lock_guard lock(m_mutex);
        posted.swap(m_events);
    }
    if ((events & Voice::kTagDue) != 0)
        hearTitles();
    const bool isStalled = m_voice.isStalled();
    if ((events & Voice::kResumed) != 0 && isStalled)
        m_syncs.fire(BASS_SYNC_STALL, 1);
    if ((events & Voice::kStalled) != 0)
        m_syncs.fire(BASS_SYNC_STALL, 0);
    if ((events & Voice::kResumed) != 0 && !isStalled)
        m_syncs.fire(BASS_SYNC_STALL, 1);
    if ((events & Voice::kSlideEnded) != 0)
        m_syncs.fireFor(BASS_SYNC_SLIDE, BASS_ATTRIB_VOL, BASS_ATTRIB_VOL);
    for (const Event& event : posted) {
        if (event.type == BASS_SYNC_DOWNLOAD)
            tellDownloadEnd();
        else
            m_syncs.fire(event.type, event.data);
    }
    if ((events & Voice::kEnded) == 0)
        return false;
    m_syncs.fire(BASS_SYNC_END, 0);
    return (flags() & BASS_STREAM_AUTOFREE) != 0;
}

/// One sync for each title, and what it reads is that title.
void StreamChannel::hearTitles() {
    const std::uint64_t heard = m_voice.hasEnded() ? Voice::kNever : m_voice.heardFrame();
    for (;;) {
        DWORD type = 0;
        {
            const std::lock_guard lock(m_mutex);
            const auto entry = m_timeline.take(heard);
            if (!entry) {
                m_voice.armTag(m_timeline.next().value_or(Voice::kNever));
                return;
            }
            setTag(*entry);
            type = entry->tagType;
        }
        m_syncs.fire(syncOf(type), 0);
    }
}

} // namespace BASS
