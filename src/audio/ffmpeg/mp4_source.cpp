#include "audio/ffmpeg/mp4_source.h"

#include "audio/ffmpeg/stream_tap.h"
#include "audio/mp4_index.h"
#include "base/log.h"

#include <cstdlib>
#include <utility>

namespace BASS {
namespace {

/// Of an index: several days of audio.
constexpr std::uint64_t kMostIndexBytes = 64U * 1024U * 1024U;
/// Boxes looked at behind the audio.
constexpr int kMostBoxes = 8;
constexpr int kPartialContent = 206;

} // namespace

class Mp4Source::FileSink final : public TransferSink {
  public:
    explicit FileSink(std::weak_ptr<Mp4Source> owner) : m_owner(std::move(owner)) {}

    void answered(const HttpHeaders& headers, int status) override {
        if (const auto owner = m_owner.lock())
            owner->answered(headers, status);
    }
    bool body(const std::uint8_t* data, std::size_t size) override {
        const auto owner = m_owner.lock();
        return !owner || owner->body(data, size);
    }
    void ended(int error) override {
        const auto owner = m_owner.lock();
        if (owner && !owner->m_isClosed)
            owner->fileEnded(error);
    }

  private:
    const std::weak_ptr<Mp4Source> m_owner;
};

class Mp4Source::IndexSink final : public TransferSink {
  public:
    explicit IndexSink(std::weak_ptr<Mp4Source> owner) : m_owner(std::move(owner)) {}

    void answered(const HttpHeaders& /*headers*/, int status) override { m_status = status; }
    bool body(const std::uint8_t* data, std::size_t size) override {
        const auto owner = m_owner.lock();
        if (!owner || owner->m_isClosed)
            return true;
        if (m_status != kPartialContent) { // the whole file once more: no help
            owner->indexEnded(false);
            return false;
        }
        return owner->indexBytes(data, size);
    }
    void ended(int /*error*/) override {
        const auto owner = m_owner.lock();
        if (owner && !owner->m_isClosed)
            owner->indexEnded(false);
    }

  private:
    const std::weak_ptr<Mp4Source> m_owner;
    int m_status = 0;
};

Mp4Source::Mp4Source(NetEngine& net, HttpRequest request, std::shared_ptr<StreamTap> tap)
    : m_net(net), m_request(std::move(request)), m_tap(std::move(tap)) {}

Mp4Source::~Mp4Source() = default;

void Mp4Source::start() {
    m_file =
        std::make_shared<HttpTransfer>(m_request, std::make_shared<FileSink>(weak_from_this()));
    m_net.start(m_file);
}

void Mp4Source::stop() {
    m_net.stop(m_file);
    m_net.call([self = shared_from_this()] {
        self->m_isClosed = true;
        if (self->m_index)
            self->m_net.stop(std::exchange(self->m_index, {}));
    });
}

void Mp4Source::resume() {
    m_net.call([self = shared_from_this()] {
        if (self->m_state != State::Index)
            self->m_net.resume(self->m_file);
    });
}

void Mp4Source::answered(const HttpHeaders& headers, int status) {
    m_length = std::strtoull(headers.value("content-length").c_str(), nullptr, 10);
    if (m_length == 0 || m_request.offset > 0)
        m_state = State::Through;
    m_tap->answered(headers, status);
}

/// While the index is on its way these bytes are refused, and come again.
bool Mp4Source::body(const std::uint8_t* data, std::size_t size) {
    if (m_state == State::Index)
        return false;
    if (m_given < m_held.size()) { // what looking has held back comes first
        if (!m_tap->body(m_held.data() + m_given, m_held.size() - m_given))
            return false;
        m_given = m_held.size();
    }
    if (m_state == State::Through)
        return m_tap->body(data, size);
    m_held.insert(m_held.end(), data, data + size);
    if (look())
        m_given = m_tap->body(m_held.data(), m_held.size()) ? m_held.size() : 0;
    return true;
}

/// True where the stream goes on as it is.
bool Mp4Source::look() {
    constexpr std::size_t kMostHeld = 256U * 1024U;
    while (m_boxAt + kMp4BoxHeaderBytes <= m_held.size()) {
        const auto box = parseMp4Box(m_held.data() + m_boxAt, m_held.size() - m_boxAt);
        const bool isAudio = box && box->type == mp4Type("mdat");
        if (isAudio && box->bytes > 0 && m_boxAt + box->bytes < m_length) {
            // the head of the file goes to the decoder now, the audio behind the index
            m_given = static_cast<std::size_t>(m_boxAt);
            m_tap->body(m_held.data(), m_given);
            m_state = State::Index;
            m_boxAt += box->bytes;
            fetchBoxes();
            return false;
        }
        const bool isPassed =
            box && (box->type == mp4Type("ftyp") || box->type == mp4Type("free") ||
                    box->type == mp4Type("skip") || box->type == mp4Type("wide") ||
                    box->type == mp4Type("uuid"));
        if (!isPassed || box->bytes == 0) {
            m_state = State::Through;
            return true;
        }
        m_boxAt += box->bytes;
    }
    if (m_boxAt > kMostHeld)
        m_state = State::Through;
    return m_state == State::Through;
}

void Mp4Source::fetchBoxes() {
    m_moov.clear();
    HttpRequest request = m_request;
    request.offset = m_boxAt;
    request.wantsTitles = false;
    qCInfo(lcAudio, "index behind the audio offset=%llu", static_cast<unsigned long long>(m_boxAt));
    m_index = std::make_shared<HttpTransfer>(std::move(request),
                                             std::make_shared<IndexSink>(weak_from_this()));
    m_net.start(m_index);
}

bool Mp4Source::indexBytes(const std::uint8_t* data, std::size_t size) {
    m_moov.insert(m_moov.end(), data, data + size);
    while (m_moov.size() >= kMp4BoxHeaderBytes) {
        const auto box = parseMp4Box(m_moov.data(), m_moov.size());
        const std::uint64_t bytes = box && box->bytes == 0 ? m_length - m_boxAt
                                    : box                  ? box->bytes
                                                           : 0;
        const bool isIndex = box && box->type == mp4Type("moov");
        if (!box || bytes > kMostIndexBytes || m_boxes > kMostBoxes) {
            indexEnded(false);
            return false;
        }
        if (m_moov.size() < bytes)
            return true;
        if (isIndex) {
            m_moov.resize(static_cast<std::size_t>(bytes));
            indexEnded(true);
            return false;
        }
        ++m_boxes;
        m_moov.erase(m_moov.begin(), m_moov.begin() + static_cast<std::ptrdiff_t>(bytes));
    }
    return true;
}

/// The file goes on, with or without its index in front.
void Mp4Source::indexEnded(bool isWhole) {
    if (m_index)
        m_net.stop(std::exchange(m_index, {}));
    if (m_state != State::Index)
        return;
    m_state = State::Through;
    if (isWhole && shiftMp4Offsets(m_moov, m_moov.size()))
        m_tap->decoderBytes(m_moov.data(), m_moov.size());
    else
        qCWarning(lcAudio, "no index can be had bytes=%zu", m_moov.size());
    m_moov = {};
    if (m_hasEnded)
        fileEnded(m_endError);
    else
        m_net.resume(m_file);
}

/// A short file may be here whole before its index has been sent once more.
void Mp4Source::fileEnded(int error) {
    m_hasEnded = true;
    m_endError = error;
    if (m_state == State::Index)
        return;
    m_tap->body(m_held.data() + m_given, m_held.size() - m_given);
    m_tap->ended(error);
}

} // namespace BASS
