#pragma once

#include "audio/ffmpeg/stream_source.h"

#include <chrono>
#include <memory>
#include <string>

namespace BASS {

class StreamTap;

/// Protocols that curl does not speak, by FFmpeg's own: mms over HTTP and TCP (the tap gets the ASF
/// bytes) and rtsp (it gets the elementary stream, framed).
///
/// *Thread*: one of its own a stream, which start() begins. It outlives this object for as long as
/// a name server keeps it waiting, and touches nothing but what it shares in the tap then.
class AvioSource final : public StreamSource {
  public:
    struct Request {
        std::string url; ///< mms, mmsh, mmst, rtsp
        std::string userAgent;
        std::chrono::milliseconds answerTimeout{5000};
        std::chrono::milliseconds readTimeout{0}; ///< 0: no limit
    };

    AvioSource(Request request, std::shared_ptr<StreamTap> tap);
    ~AvioSource() override;

    [[nodiscard]] static bool takes(const std::string& url);
    /// Until the threads of all streams have ended, at most for so long.
    static void waitForAll(std::chrono::milliseconds limit);

    void start() override;
    void stop() override;
    /// What plays live does not wait.
    void resume() override {}

  private:
    class Session;
    const std::shared_ptr<Session> m_session;
};

} // namespace BASS
