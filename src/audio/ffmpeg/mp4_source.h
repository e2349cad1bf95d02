#pragma once

#include "audio/ffmpeg/http_transfer.h"
#include "audio/ffmpeg/net_engine.h"
#include "audio/ffmpeg/stream_source.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace BASS {

class StreamTap;

/// An MP4 file over HTTP. Where its index stands behind its audio, the index is fetched first by a
/// request of its own and put before the audio on its way to the decoder, which so plays front to
/// back at once. What the engine gets is the file as it is.
///
/// *Thread*: StreamSource's functions any, all else the network thread.
class Mp4Source final : public StreamSource, public std::enable_shared_from_this<Mp4Source> {
  public:
    Mp4Source(NetEngine& net, HttpRequest request, std::shared_ptr<StreamTap> tap);
    ~Mp4Source() override;

    void start() override;
    void stop() override;
    void resume() override;

  private:
    class FileSink;
    class IndexSink;
    enum class State {
        Looking, ///< through the boxes in front of the audio
        Index,   ///< it is being fetched; the file waits
        Through,
    };

    void answered(const HttpHeaders& headers, int status);
    bool body(const std::uint8_t* data, std::size_t size);
    bool look();
    void fetchBoxes();
    bool indexBytes(const std::uint8_t* data, std::size_t size);
    void indexEnded(bool isWhole);
    void fileEnded(int error);

    NetEngine& m_net;
    const HttpRequest m_request;
    const std::shared_ptr<StreamTap> m_tap;
    std::shared_ptr<HttpTransfer> m_file;
    std::shared_ptr<HttpTransfer> m_index;
    State m_state = State::Looking;
    std::uint64_t m_length = 0;
    bool m_isClosed = false;
    std::vector<std::uint8_t> m_held; ///< first bytes of the file
    std::size_t m_given = 0;          ///< of them the tap has had
    std::uint64_t m_boxAt = 0;        ///< in the file, of the box that is looked at
    std::vector<std::uint8_t> m_moov; ///< from m_boxAt on
    int m_boxes = 0;                  ///< passed behind the audio
    bool m_hasEnded = false;
    int m_endError = 0;
};

} // namespace BASS
