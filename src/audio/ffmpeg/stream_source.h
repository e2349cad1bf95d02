#pragma once

namespace BASS {

/// Where a StreamTap's bytes come from. *Thread*: any; all return at once. *Owner*: the channel.
/// *Life*: start() once, stop() once; what the tap is given after stop() its closed gate and
/// aborted buffer swallow.
class StreamSource {
  public:
    virtual ~StreamSource() = default;
    virtual void start() = 0;
    virtual void stop() = 0;
    /// There is room again in a buffer that told it to wait.
    virtual void resume() = 0;
};

} // namespace BASS
