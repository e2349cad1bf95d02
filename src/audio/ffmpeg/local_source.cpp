#include "audio/ffmpeg/local_source.h"

#include "audio/bass_defs.h"
#include "base/log.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <array>
#include <limits>

namespace BASS {
namespace {

constexpr char kScheme[] = "file://";

QString localPath(const std::string& url) {
    return QUrl::fromEncoded(QByteArray::fromStdString(url)).toLocalFile();
}

} // namespace

LocalSource::LocalSource(NetEngine& net,
                         const HttpRequest& request,
                         std::shared_ptr<TransferSink> sink)
    : m_net(net), m_url(request.url), m_offset(request.offset),
      m_left(request.length > 0 ? request.length : std::numeric_limits<std::uint64_t>::max()),
      m_sink(std::move(sink)), m_file(localPath(request.url)) {}

bool LocalSource::takes(const std::string& url) {
    return url.rfind(kScheme, 0) == 0;
}

void LocalSource::start() {
    post(&LocalSource::open);
}

void LocalSource::stop() {
    m_net.call([self = shared_from_this()] { self->m_sink.reset(); });
}

void LocalSource::resume() {
    m_net.call([self = shared_from_this()] {
        if (std::exchange(self->m_isPaused, false))
            self->read();
    });
}

void LocalSource::post(void (LocalSource::*task)()) {
    m_net.call([self = shared_from_this(), task] { (self.get()->*task)(); });
}

void LocalSource::open() {
    // a pipe or a device could be silent for ever, and the connections beside it with it
    const bool isOpen = QFileInfo(m_file.fileName()).isFile() && m_file.open(QIODevice::ReadOnly) &&
                        m_file.seek(static_cast<qint64>(m_offset));
    if (!isOpen) {
        end(BASS_ERROR_FILEOPEN);
        return;
    }
    if (m_sink)
        m_sink->answered({{}, m_url}, 0);
    read();
}

void LocalSource::read() {
    if (!m_sink)
        return;
    std::array<char, 65536> piece{};
    const auto wanted = std::min<std::uint64_t>(piece.size(), m_left);
    const qint64 at = m_file.pos();
    const qint64 got = m_file.read(piece.data(), static_cast<qint64>(wanted));
    if (got <= 0) {
        end(got < 0 ? BASS_ERROR_FILEOPEN : BASS_OK);
        return;
    }
    const std::shared_ptr<TransferSink> sink = m_sink; // what it does may be to stop this
    if (!sink->body(reinterpret_cast<const std::uint8_t*>(piece.data()),
                    static_cast<std::size_t>(got))) {
        m_isPaused = true;
        m_file.seek(at);
        return;
    }
    m_left -= static_cast<std::uint64_t>(got);
    post(&LocalSource::read);
}

void LocalSource::end(int error) {
    qCInfo(lcAudio, "file ended url=%s error=%d", m_url.c_str(), error);
    if (const auto sink = std::exchange(m_sink, nullptr))
        sink->ended(error);
}

} // namespace BASS
