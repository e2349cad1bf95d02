#pragma once

#include "audio/ffmpeg/http_transfer.h"
#include "audio/ffmpeg/net_engine.h"
#include "audio/ffmpeg/stream_source.h"

#include <memory>

namespace BASS {

/// One connection that lasts as long as the stream.
class HttpSource final : public StreamSource {
  public:
    HttpSource(NetEngine& net, HttpRequest request, std::shared_ptr<TransferSink> sink)
        : m_net(net),
          m_transfer(std::make_shared<HttpTransfer>(std::move(request), std::move(sink))) {}

    void start() override { m_net.start(m_transfer); }
    void stop() override { m_net.stop(m_transfer); }
    void resume() override { m_net.resume(m_transfer); }

  private:
    NetEngine& m_net;
    const std::shared_ptr<HttpTransfer> m_transfer;
};

} // namespace BASS
