#include "audio/ffmpeg/decode_worker.h"

#include "base/log.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace BASS {
namespace {

/// Decoded before playing may begin.
constexpr int kPrebufferMs = 100;
/// Kept decoded while somebody moves the sliders of the sound.
constexpr std::uint32_t kAdjustedMs = 400;
/// A frame-wise format that gives nothing for so many bytes is not what it was taken for.
constexpr std::uint64_t kBarrenBytes = 64U * 1024U;
constexpr int kMaxFailures = 3;

bool isFramed(StreamFormat format) {
    return format == StreamFormat::Mpeg || format == StreamFormat::Adts;
}

} // namespace

DecodeWorker::DecodeWorker(DecoderInput& input, Voice& voice, int rate, Callbacks callbacks)
    : m_input(input), m_voice(voice), m_rate(rate), m_callbacks(std::move(callbacks)) {}

DecodeWorker::~DecodeWorker() {
    stop();
}

void DecodeWorker::start() {
    m_thread = std::thread([this] { run(); });
}

void DecodeWorker::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping.store(true);
    }
    m_wake.notify_all();
    m_input.abort();
    m_voice.wakeDecoder();
    if (m_thread.joinable())
        m_thread.join();
}

void DecodeWorker::seek(double seconds) {
    {
        const std::lock_guard lock(m_mutex);
        m_seekTo = seconds;
    }
    m_wake.notify_all();
    m_voice.wakeDecoder();
}

void DecodeWorker::discardDecoded() {
    {
        const std::lock_guard lock(m_mutex);
        m_mustDiscard = true;
    }
    m_voice.wakeDecoder();
}

DecodeWorker::Info DecodeWorker::info() const {
    const std::lock_guard lock(m_mutex);
    return m_info;
}

void DecodeWorker::run() {
    int error = BASS_OK;
    m_format = identify(error);
    if (error == BASS_OK && !openLink())
        error = m_input.error() != BASS_OK ? m_input.error() : BASS_ERROR_FILEFORM;
    if (error != BASS_OK) {
        tellReady(error);
        return;
    }
    do {
        while (!m_isStopping.load() && stepOnce()) {
        }
        tellReady(m_voice.writtenFrame() > 0 ? BASS_OK : BASS_ERROR_FILEFORM);
        m_voice.setSourceEnded(true);
        if (m_callbacks.ended)
            m_callbacks.ended();
    } while (waitForSeek());
}

/// What stands in front of the input, whose bytes before it are thrown away.
StreamFormat DecodeWorker::identify(int& error) {
    std::size_t known = 0;
    for (;;) {
        bool isEnd = false;
        const auto bytes = m_input.peek(kSniffBytes, known, isEnd);
        if (m_isStopping.load() || bytes.empty()) {
            error = m_input.error() != BASS_OK ? m_input.error() : BASS_ERROR_FILEOPEN;
            return StreamFormat::None;
        }
        known = bytes.size();
        const SniffResult result =
            sniffStream(bytes.data(), bytes.size(), isEnd, m_callbacks.contentType());
        if (result.verdict == SniffResult::Verdict::NeedMore && !isEnd)
            continue;
        const bool isTag = result.verdict == SniffResult::Verdict::SkipTag;
        if (isTag || result.verdict == SniffResult::Verdict::Found) {
            const bool isAccepted = isTag || m_callbacks.accepts(result.format);
            error = isAccepted && discard(result.offset) ? BASS_OK : BASS_ERROR_FILEFORM;
            if (!isTag || error != BASS_OK)
                return result.format;
            known = 0;
            continue;
        }
        error = BASS_ERROR_FILEFORM;
        return StreamFormat::None;
    }
}

bool DecodeWorker::discard(std::size_t count) {
    if (m_input.seekableSize() > 0)
        return m_input.seek(m_input.taken() + count);
    std::array<std::uint8_t, 4096> rubbish{};
    while (count > 0) {
        const auto got = m_input.read(rubbish.data(), std::min(count, rubbish.size()));
        if (got.status == DecoderInput::Status::End || got.status == DecoderInput::Status::Aborted)
            return false;
        count -= std::min(count, got.size);
    }
    return true;
}

bool DecodeWorker::openLink() {
    m_segments.clear();
    m_fed = 0;
    m_fedLastGood = 0;
    m_mustReopen = false;
    m_decoder = std::make_unique<LinkDecoder>(m_rate, source());
    if (!m_decoder->open(m_format))
        return false;
    updateInfo();
    return true;
}

ByteSource DecodeWorker::source() {
    ByteSource result;
    result.read = [this](std::uint8_t* out, int max) { return feed(out, max); };
    const std::uint64_t size = m_input.seekableSize();
    if (size > 0) {
        const std::uint64_t start = m_input.taken(); // behind a tag
        m_sourceStart = start;
        result.size = static_cast<std::int64_t>(size - start);
        result.seek = [this, start](std::int64_t offset) -> std::int64_t {
            if (offset < 0 || !m_input.seek(start + static_cast<std::uint64_t>(offset)))
                return -1;
            return offset;
        };
    }
    return result;
}

int DecodeWorker::feed(std::uint8_t* out, int max) {
    while (!m_mustReopen) {
        if (isFramed(m_format) && m_fed - m_fedLastGood > kBarrenBytes && m_isReady) {
            m_mustReopen = true;
            break;
        }
        const auto got = m_input.read(out, static_cast<std::size_t>(max));
        switch (got.status) {
        case DecoderInput::Status::Bytes:
            if (m_segments.empty() ||
                m_segments.back().position - m_segments.back().fed != got.position - m_fed)
                m_segments.push_back({m_fed, got.position});
            m_fed += got.size;
            return static_cast<int>(got.size);
        case DecoderInput::Status::LinkEnd:
            m_mustReopen = m_fed > 0;
            break;
        case DecoderInput::Status::Gap:
            m_mustReopen = isFramed(m_format) && m_fed > 0; // an Ogg page is found again by itself
            break;
        case DecoderInput::Status::End:
            return ByteSource::kEnd;
        case DecoderInput::Status::Aborted:
            return ByteSource::kAborted;
        }
    }
    return ByteSource::kEnd;
}

/// False when there is nothing more to do until a jump.
bool DecodeWorker::stepOnce() {
    if (performSeek())
        return true;
    const bool isUnheard = m_isReady && m_callbacks.isUnheard && m_callbacks.isUnheard();
    const bool isAdjusted = m_callbacks.isAdjusted && m_callbacks.isAdjusted();
    m_voice.setUnheard(isUnheard);
    m_voice.setKept(isAdjusted && !isUnheard ? kAdjustedMs : 0);
    if (isUnheard)
        m_decoder->skip();
    else if (const std::size_t again = m_decoder->rejoin(m_voice.bufferedFrames()); again > 0)
        m_voice.catchUpAt(m_voice.writtenFrame() - again);
    m_voice.setCatchingUp(m_decoder->isCatchingUp());
    switch (m_decoder->step()) {
    case LinkDecoder::Step::Audio:
        m_fedLastGood = m_fed;
        m_failures = 0;
        return deliver(m_decoder->block());
    case LinkDecoder::Step::Nothing:
        return true;
    case LinkDecoder::Step::Aborted:
        return false;
    case LinkDecoder::Step::End:
        deliver(m_decoder->block());
        return m_mustReopen && linkIsOver();
    case LinkDecoder::Step::Broken:
        return linkIsOver();
    }
    return false;
}

/// The next link, or the same stream behind a gap.
bool DecodeWorker::linkIsOver() {
    int error = BASS_OK;
    while (++m_failures <= kMaxFailures && !m_isStopping.load()) {
        m_format = identify(error);
        if (error != BASS_OK)
            break;
        if (openLink())
            return true;
    }
    qCInfo(lcAudio, "stream cannot be decoded further error=%d", error);
    return false;
}

bool DecodeWorker::deliver(LinkDecoder::Block& block) {
    if (block.samples.empty() && block.silence == 0)
        return true;
    updateInfo();
    deliverComments();
    const std::uint64_t position = streamPosition(block.hasPosition ? block.position : m_fed);
    deliverTitles(position);
    if (m_callbacks.pcm && block.silence == 0)
        m_callbacks.pcm(block.samples, position);
    return handOn(block);
}

/// Waits for room where there is none.
bool DecodeWorker::handOn(const LinkDecoder::Block& block) {
    const std::size_t frames = block.silence + block.samples.size() / Voice::kChannels;
    const auto write = [&](std::size_t from) {
        return block.silence > 0
                   ? m_voice.writeSilence(frames - from)
                   : m_voice.write(block.samples.data() + from * Voice::kChannels, frames - from);
    };
    const auto prebuffer = static_cast<std::size_t>(m_rate) * kPrebufferMs / 1000;
    for (std::size_t done = 0;;) {
        done += write(done);
        const bool isWritten = done == frames;
        if (!m_isReady && (!isWritten || m_voice.bufferedFrames() >= prebuffer))
            tellReady(BASS_OK);
        if (isWritten && !m_voice.isFull())
            return true;
        m_voice.waitForSpace();
        if (isWritten)
            return true;
        if (m_isStopping.load())
            return false;
        const std::lock_guard lock(m_mutex);
        if (m_seekTo || m_mustDiscard)
            return true;
    }
}

/// What only the container tells; streams of the other formats have had their titles taken out on
/// the way here.
void DecodeWorker::deliverComments() {
    const bool isAsf = m_format == StreamFormat::Asf;
    if (!isAsf && m_format != StreamFormat::Mp4)
        return;
    std::string comments = m_decoder->takeComments();
    if (!comments.empty())
        m_callbacks.title(
            {m_voice.writtenFrame(), isAsf ? BASS_TAG_WMA : BASS_TAG_MP4, std::move(comments)});
}

void DecodeWorker::deliverTitles(std::uint64_t position) {
    StreamMark mark;
    // The first title of a connection tells what plays already: it holds from the first frame on.
    while (m_input.takeTitle(m_hasTitle ? position : ~std::uint64_t{0}, mark)) {
        const std::uint64_t frame = m_hasTitle ? m_voice.writtenFrame() : 0;
        m_hasTitle = true;
        m_callbacks.title({frame, mark.tagType, std::move(mark.data)});
    }
}

std::uint64_t DecodeWorker::streamPosition(std::uint64_t fed) {
    if (m_input.seekableSize() > 0)
        return m_sourceStart + fed; // whatever has been jumped over
    while (m_segments.size() > 1 && m_segments[1].fed <= fed)
        m_segments.erase(m_segments.begin());
    if (m_segments.empty())
        return fed;
    return m_segments.front().position + fed - m_segments.front().fed;
}

void DecodeWorker::tellReady(int error) {
    if (m_isReady)
        return;
    m_isReady = true;
    m_callbacks.ready(error);
}

void DecodeWorker::updateInfo() {
    const LinkDecoder::Info audio = m_decoder->info();
    const double duration = m_decoder->duration();
    constexpr std::size_t kBytesAKilobit = 125;
    m_input.setPace(static_cast<std::size_t>(std::max(0, audio.bitrate)) * kBytesAKilobit);
    const std::lock_guard lock(m_mutex);
    m_info = {m_format, audio, duration};
}

bool DecodeWorker::waitForSeek() {
    if (m_input.seekableSize() == 0)
        return false;
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_isStopping.load() || m_seekTo.has_value(); });
    return !m_isStopping.load();
}

bool DecodeWorker::performSeek() {
    std::optional<double> target;
    {
        const std::lock_guard lock(m_mutex);
        target.swap(m_seekTo);
        if (std::exchange(m_mustDiscard, false))
            m_voice.restartAt(m_voice.writtenFrame());
    }
    if (!target || !m_decoder->seek(*target))
        return false;
    m_voice.restartAt(static_cast<std::uint64_t>(std::llround(*target * m_rate)));
    return true;
}

} // namespace BASS
