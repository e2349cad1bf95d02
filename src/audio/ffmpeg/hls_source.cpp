#include "audio/ffmpeg/hls_source.h"

#include "audio/ffmpeg/http_source.h"
#include "audio/ffmpeg/local_source.h"
#include "audio/ffmpeg/segment_cipher.h"
#include "audio/ffmpeg/stream_tap.h"
#include "audio/ffmpeg/url_text.h"
#include "base/log.h"

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kMostPlaylistBytes = 16U * 1024U * 1024U;
constexpr std::size_t kMostSmallBytes = 1024U * 1024U;
constexpr std::size_t kMostSegmentBytes = 64U * 1024U * 1024U;
constexpr int kTriesASegment = 2;
constexpr int kMostFailures = 5;
constexpr milliseconds kRetryPause{500};
constexpr milliseconds kLongestSilence{10000};
constexpr int kHttpOk = 200;

const char* contentType(FramedCodec codec) {
    switch (codec) {
    case FramedCodec::Adts:
        return "Content-Type: audio/aac";
    case FramedCodec::Flac:
        return "Content-Type: audio/flac";
    default:
        return "Content-Type: audio/mpeg";
    }
}

/// A length and a type are the playlist's, not the stream's.
HttpHeaders streamHeaders(const HttpHeaders& playlist, FramedCodec codec) {
    HttpHeaders result = playlist;
    const auto isAbout = [](const std::string& line, const char* name) {
        return !HttpHeaders{{line}, {}}.value(name).empty();
    };
    result.lines.erase(std::remove_if(result.lines.begin(),
                                      result.lines.end(),
                                      [&isAbout](const std::string& line) {
                                          return isAbout(line, "content-length") ||
                                                 isAbout(line, "content-type");
                                      }),
                       result.lines.end());
    result.lines.emplace_back(contentType(codec));
    return result;
}

} // namespace

/// One request's way back to its source.
class HlsSource::Fetch final : public TransferSink {
  public:
    Fetch(std::weak_ptr<HlsSource> owner, OnBytes onBytes, OnEnd onEnd)
        : m_owner(std::move(owner)), m_onBytes(std::move(onBytes)), m_onEnd(std::move(onEnd)) {}

    void answered(const HttpHeaders& headers, int status) override {
        m_answer.headers = headers;
        m_answer.status = status;
    }
    bool body(const std::uint8_t* data, std::size_t size) override {
        const auto owner = m_owner.lock();
        return owner && !owner->m_isClosed && m_onBytes(m_answer, data, size);
    }
    void ended(int error) override {
        m_answer.error = error;
        const auto owner = m_owner.lock();
        if (owner && !owner->m_isClosed)
            m_onEnd(m_answer);
    }

  private:
    const std::weak_ptr<HlsSource> m_owner;
    const OnBytes m_onBytes;
    const OnEnd m_onEnd;
    Answer m_answer;
};

HlsSource::HlsSource(NetEngine& net, HttpRequest request, std::shared_ptr<StreamTap> tap)
    : m_net(net), m_request(std::move(request)), m_tap(std::move(tap)), m_reader(*this),
      m_url(m_request.url) {}

HlsSource::~HlsSource() = default;

void HlsSource::start() {
    m_net.call(guarded(&HlsSource::fetchPlaylist));
}

void HlsSource::stop() {
    m_net.call([self = shared_from_this()] { self->close(); });
}

void HlsSource::resume() {
    m_net.call([self = shared_from_this()] {
        if (self->m_transfer)
            self->m_transfer->resume();
        else
            self->fetchNext();
    });
}

std::function<void()> HlsSource::guarded(void (HlsSource::*task)()) {
    return [weak = weak_from_this(), task, round = m_round] {
        const auto self = weak.lock();
        if (self && !self->m_isClosed && self->m_round == round)
            (self.get()->*task)();
    };
}

void HlsSource::close() {
    m_isClosed = true;
    for (Transfer* const slot : {&m_playlistTransfer, &m_transfer}) {
        if (*slot)
            (*slot)->stop();
        slot->reset();
    }
}

void HlsSource::end(int error) {
    if (!m_hasAudio && m_failures > 0)
        error = m_lastError; // what the segments were tells more than that there are no more
    qCInfo(lcAudio, "segments ended url=%s error=%d", loggableUrl(m_url).c_str(), error);
    if (error != BASS_OK && !m_hasAudio && tryNextChoice())
        return;
    close();
    m_tap->ended(error);
}

HlsSource::Transfer HlsSource::fetch(const HlsResource& resource, OnBytes onBytes, OnEnd onEnd) {
    HttpRequest request = m_request;
    request.url = requestUrl(resource.uri);
    request.offset = resource.offset;
    request.length = resource.length;
    request.wantsTitles = false;
    if (request.readTimeout.count() <= 0)
        request.readTimeout = kLongestSilence;
    auto sink = std::make_shared<Fetch>(weak_from_this(), std::move(onBytes), std::move(onEnd));
    Transfer transfer;
    if (m_request.isFileAllowed && LocalSource::takes(request.url))
        transfer = std::make_shared<LocalSource>(m_net, request, std::move(sink));
    else
        transfer = std::make_shared<HttpSource>(m_net, std::move(request), std::move(sink));
    transfer->start();
    return transfer;
}

std::string HlsSource::resolved(const std::string& uri) const {
    const std::string& base = m_base.empty() ? m_url : m_base;
    std::string url = resolvedUrl(base, uri);
    // what comes from the network may not name the user's files
    return LocalSource::takes(url) && !LocalSource::takes(base) ? std::string() : url;
}

// --- playlists

void HlsSource::fetchPlaylist() {
    m_text.clear();
    m_playlistTransfer = fetch(
        {m_url, 0, 0},
        [this](const Answer& answer, const std::uint8_t* data, std::size_t size) {
            return playlistBytes(answer, data, size);
        },
        [this](const Answer& answer) { playlistEnded(answer); });
}

/// False: this is no playlist, and need not be fetched to its end, which may not exist.
bool HlsSource::playlistBytes(const Answer& /*answer*/,
                              const std::uint8_t* data,
                              std::size_t size) {
    m_text.append(reinterpret_cast<const char*>(data), size);
    if (mayBeHlsPlaylist(m_text) && m_text.size() <= kMostPlaylistBytes)
        return true;
    std::exchange(m_playlistTransfer, {})->stop();
    playlistFailed(BASS_ERROR_FILEFORM);
    return false;
}

void HlsSource::playlistEnded(const Answer& answer) {
    m_playlistTransfer.reset();
    if (answer.error != BASS_OK) {
        playlistFailed(answer.error);
        return;
    }
    HlsPlaylist playlist = parseHlsPlaylist(std::exchange(m_text, {}));
    m_base = answer.headers.url;
    m_headers = answer.headers;
    if (playlist.kind == HlsPlaylist::Kind::Media)
        takeMedia(std::move(playlist));
    else if (playlist.kind == HlsPlaylist::Kind::Master && !m_isMasterSeen)
        takeMaster(playlist);
    else
        playlistFailed(BASS_ERROR_FILEFORM);
}

void HlsSource::takeMaster(const HlsPlaylist& master) {
    m_isMasterSeen = true;
    m_choices = hlsChoices(master);
    for (std::string& choice : m_choices)
        choice = resolved(choice);
    std::reverse(m_choices.begin(), m_choices.end());
    if (!tryNextChoice())
        end(BASS_ERROR_FILEFORM);
}

bool HlsSource::tryNextChoice() {
    if (m_choices.empty())
        return false;
    if (m_transfer)
        std::exchange(m_transfer, {})->stop();
    m_url = m_choices.back();
    m_choices.pop_back();
    ++m_round;
    m_base.clear();
    m_media = {};
    m_isPlaying = m_isBusy = false;
    m_last.reset();
    m_failures = 0;
    m_reader.reset();
    m_pending.clear();
    qCInfo(lcAudio, "segments of url=%s", loggableUrl(m_url).c_str());
    fetchPlaylist();
    return true;
}

void HlsSource::takeMedia(HlsPlaylist media) {
    const bool hasNew =
        !m_isPlaying || (!media.segments.empty() &&
                         (m_media.segments.empty() ||
                          media.segments.back().sequence != m_media.segments.back().sequence));
    if (hasNew)
        m_lastNews = std::chrono::steady_clock::now();
    m_isPlaying = true;
    m_media = std::move(media);
    if (!m_media.hasEnd)
        scheduleReload(hasNew);
    fetchNext();
}

void HlsSource::playlistFailed(int error) {
    if (!m_isPlaying)
        end(error);
    else
        scheduleReload(false);
}

void HlsSource::scheduleReload(bool hasNew) {
    // a window of which nothing can be played is no station
    const bool isHopeless = !m_hasAudio && m_failures > 0 && !m_isBusy && !hasNew;
    if (isHopeless || std::chrono::steady_clock::now() - m_lastNews > hlsPatience(m_media)) {
        end(BASS_ERROR_TIMEOUT);
        return;
    }
    m_net.call(guarded(&HlsSource::fetchPlaylist), hlsReloadPause(m_media, hasNew));
}

// --- segments

void HlsSource::fetchNext() {
    while (!m_isClosed && m_isPlaying && !m_isBusy) {
        HlsNext next{HlsNext::What::Fetch, hlsFirstSegment(m_media), false};
        if (m_last || m_media.segments.empty())
            next = hlsNextSegment(m_media, m_last.value_or(0));
        if (next.what == HlsNext::What::End)
            end(BASS_OK);
        if (next.what != HlsNext::What::Fetch)
            return;
        const bool hasRoom = !m_media.hasEnd || !m_tap->fifo().mustWait(m_tap->fifo().waitAt() / 2);
        if (!hasRoom)
            return; // resume() comes back here
        m_segment = m_media.segments[next.index];
        m_hasGap = m_hasGap || next.hasGap || m_segment.isMissing;
        if (m_segment.isMissing) {
            m_last = m_segment.sequence;
            continue;
        }
        m_isBusy = true;
        m_tries = 0;
        m_taken = 0;
        m_whole.clear();
        startSegment();
    }
}

void HlsSource::startSegment() {
    if (m_segment.key.method == HlsKey::Method::Other)
        end(BASS_ERROR_CODEC);
    else if (needsKey() && resolved(m_segment.key.uri) != m_keyUri)
        fetchKey();
    else if (!m_segment.map.uri.empty() && !(m_segment.map == m_mapResource))
        fetchMap();
    else
        fetchSegment();
}

bool HlsSource::needsKey() const {
    return m_segment.key.method == HlsKey::Method::Aes128;
}

void HlsSource::fetchSmall(const HlsResource& resource,
                           std::vector<std::uint8_t>& out,
                           std::function<bool()> onDone) {
    out.clear();
    m_transfer = fetch(
        {resolved(resource.uri), resource.offset, resource.length},
        [&out](const Answer&, const std::uint8_t* data, std::size_t size) {
            if (out.size() + size <= kMostSmallBytes)
                out.insert(out.end(), data, data + size);
            return true;
        },
        [this, resource, &out, done = std::move(onDone)](const Answer& answer) {
            m_transfer.reset();
            if (answer.status == kHttpOk && resource.length > 0) { // it sent the whole
                const auto from = std::min<std::uint64_t>(resource.offset, out.size());
                out.erase(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(from));
                out.resize(std::min<std::uint64_t>(resource.length, out.size()));
            }
            if (answer.error != BASS_OK || !done())
                segmentFailed(answer.error != BASS_OK ? answer.error : BASS_ERROR_FILEFORM);
            else
                startSegment();
        });
}

void HlsSource::fetchKey() {
    m_keyUri.clear();
    fetchSmall({m_segment.key.uri, 0, 0}, m_key, [this] {
        const bool isKey = m_key.size() == kAesBlockBytes;
        m_keyUri = isKey ? resolved(m_segment.key.uri) : std::string();
        return isKey;
    });
}

void HlsSource::fetchMap() {
    m_mapResource = {};
    fetchSmall(m_segment.map, m_map, [this] {
        m_mapResource = m_segment.map;
        return !m_map.empty();
    });
}

void HlsSource::fetchSegment() {
    HlsResource resource = m_segment.resource;
    resource.uri = resolved(resource.uri);
    resource.offset += m_taken;
    if (resource.length > 0)
        resource.length -= std::min(resource.length - 1, m_taken);
    m_toSkip = resource.offset;
    m_transfer = fetch(
        resource,
        [this](const Answer& answer, const std::uint8_t* data, std::size_t size) {
            return segmentBytes(answer, data, size);
        },
        [this](const Answer& answer) { segmentEnded(answer); });
}

bool HlsSource::segmentBytes(const Answer& answer, const std::uint8_t* data, std::size_t size) {
    if (m_media.hasEnd && m_tap->fifo().mustWait(size))
        return false;
    if (m_toSkip > 0 && answer.status == kHttpOk) { // the server knows no ranges
        const auto skip = static_cast<std::size_t>(std::min<std::uint64_t>(m_toSkip, size));
        m_toSkip -= skip;
        data += skip;
        size -= skip;
    }
    const std::uint64_t whole = m_segment.resource.length;
    if (whole > 0)
        size = static_cast<std::size_t>(
            std::min<std::uint64_t>(size, whole - std::min(whole, m_taken)));
    if (size == 0)
        return true;
    if (m_taken == 0)
        beginSegment();
    m_taken += size;
    if (!needsKey())
        m_reader.feed(data, size);
    else if (m_whole.size() + size <= kMostSegmentBytes)
        m_whole.insert(m_whole.end(), data, data + size);
    return true;
}

void HlsSource::beginSegment() {
    if (m_hasGap || m_segment.breaksOff)
        m_reader.reset();
    m_hasGap = false;
    m_pending.push_back({BASS_TAG_HLS_EXTINF, m_segment.info});
    m_reader.begin(m_segment.map.uri.empty() ? std::vector<std::uint8_t>() : m_map);
}

void HlsSource::segmentEnded(const Answer& answer) {
    m_transfer.reset();
    if (answer.error != BASS_OK) {
        segmentFailed(answer.error);
        return;
    }
    const bool isReadable = m_taken > 0 && (!needsKey() || decrypt());
    if (!isReadable || !m_reader.end()) {
        const bool isUnsupported = m_reader.codec() == FramedCodec::Unsupported;
        passOver(isUnsupported ? BASS_ERROR_CODEC : BASS_ERROR_FILEFORM);
        return;
    }
    m_failures = 0;
    m_last = m_segment.sequence;
    m_isBusy = false;
    fetchNext();
}

void HlsSource::segmentFailed(int error) {
    if (++m_tries < kTriesASegment)
        m_net.call(guarded(&HlsSource::startSegment), kRetryPause);
    else
        passOver(error);
}

void HlsSource::passOver(int error) {
    qCWarning(lcAudio,
              "segment passed over url=%s sequence=%llu error=%d",
              loggableUrl(m_url).c_str(),
              static_cast<unsigned long long>(m_segment.sequence),
              error);
    m_last = m_segment.sequence;
    m_lastError = error;
    m_hasGap = true;
    m_isBusy = false;
    if (++m_failures >= kMostFailures || error == BASS_ERROR_CODEC)
        end(error);
    else
        fetchNext();
}

bool HlsSource::decrypt() {
    const HlsSegment& segment = m_segment;
    if (!decryptSegment(m_whole, m_key, segment.key.iv.value_or(sequenceVector(segment.sequence))))
        return false;
    m_reader.feed(m_whole.data(), m_whole.size());
    m_whole.clear();
    return true;
}

// --- audio

void HlsSource::streamBegins(FramedCodec codec) {
    double length = 0.0;
    for (const HlsSegment& segment : m_media.segments)
        length += segment.seconds;
    constexpr double kUsualBytesPerSecond = 16000.0; // a length in bytes is nowhere told
    const double bytes = m_media.hasEnd ? std::max(1.0, length * kUsualBytesPerSecond) : 0.0;
    m_tap->streamBegins(streamHeaders(m_headers, codec), static_cast<std::uint64_t>(bytes));
    m_hasAudio = true;
}

void HlsSource::audio(const std::uint8_t* data, std::size_t size) {
    tellPending();
    m_tap->streamBytes(data, size);
}

void HlsSource::texts(const Id3Texts& texts) {
    std::string text;
    if (!texts.artist.empty())
        text += "ARTIST=" + texts.artist + '\0';
    if (!texts.title.empty())
        text += "TITLE=" + texts.title + '\0';
    if (text == m_lastTitle) // every segment says it again
        return;
    m_lastTitle = text;
    m_pending.push_back({BASS_TAG_OGG, std::move(text)});
}

void HlsSource::tellPending() {
    for (const Pending& tag : std::exchange(m_pending, {}))
        m_tap->streamTitle(tag.tagType, tag.text);
}

} // namespace BASS
