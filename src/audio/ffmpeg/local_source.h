#pragma once

#include "audio/ffmpeg/http_transfer.h"
#include "audio/ffmpeg/net_engine.h"
#include "audio/ffmpeg/stream_source.h"

#include <QFile>

#include <memory>
#include <string>

namespace BASS {

/// Gives a sink the bytes of a file of the user as if they came from a server, piece by piece, so
/// that connections beside it go on. The status of its answer is 0.
///
/// *Thread*: constructed anywhere, the sink is called on the network thread.
class LocalSource final : public StreamSource, public std::enable_shared_from_this<LocalSource> {
  public:
    /// Of `request` count the address, a file's (RFC 8089), the offset and the length.
    LocalSource(NetEngine& net, const HttpRequest& request, std::shared_ptr<TransferSink> sink);

    /// Whether the address is that of a file.
    [[nodiscard]] static bool takes(const std::string& url);

    void start() override;
    void stop() override;
    void resume() override;

  private:
    void post(void (LocalSource::*task)());
    void open();
    void read();
    void end(int error);

    NetEngine& m_net;
    const std::string m_url;
    const std::uint64_t m_offset;
    std::uint64_t m_left; ///< bytes
    std::shared_ptr<TransferSink> m_sink;
    QFile m_file;
    bool m_isPaused = false;
};

} // namespace BASS
