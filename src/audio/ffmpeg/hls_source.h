#pragma once

#include "audio/bass_defs.h"
#include "audio/ffmpeg/hls_segment_reader.h"
#include "audio/ffmpeg/http_transfer.h"
#include "audio/ffmpeg/net_engine.h"
#include "audio/ffmpeg/stream_source.h"
#include "audio/hls/hls_plan.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace BASS {

class StreamTap;

/// A stream of segments (RFC 8216): looks after the playlists, fetches one segment after the other
/// and gives the tap one elementary stream, with the titles that segments and playlists name.
///
/// What it decides is in hls_plan.h. A segment that cannot be had is asked for a second time and
/// then passed over; five in a row, or a playlist without news for too long, end the stream.
///
/// *Thread*: StreamSource's functions any, all else the network thread.
class HlsSource final : public StreamSource,
                        private HlsSegmentReader::Sink,
                        public std::enable_shared_from_this<HlsSource> {
  public:
    /// request: the playlist's address, and how to ask for everything else.
    HlsSource(NetEngine& net, HttpRequest request, std::shared_ptr<StreamTap> tap);
    ~HlsSource() override;

    void start() override;
    void stop() override;
    void resume() override;

  private:
    class Fetch;
    using Transfer = std::shared_ptr<StreamSource>;
    struct Answer {
        int error = 0;
        int status = 0;
        HttpHeaders headers;
    };
    using OnBytes = std::function<bool(const Answer&, const std::uint8_t*, std::size_t)>;
    using OnEnd = std::function<void(const Answer&)>;

    // audio
    void streamBegins(FramedCodec codec) override;
    void audio(const std::uint8_t* data, std::size_t size) override;
    void texts(const Id3Texts& texts) override;

    Transfer fetch(const HlsResource& resource, OnBytes onBytes, OnEnd onEnd);
    /// A key or a map: what `out` held before is lost.
    void fetchSmall(const HlsResource& resource,
                    std::vector<std::uint8_t>& out,
                    std::function<bool()> onDone);
    /// Does nothing where this object is gone, closed, or has turned to another playlist.
    std::function<void()> guarded(void (HlsSource::*task)());
    void close();
    void end(int error);

    // playlists
    void fetchPlaylist();
    bool playlistBytes(const Answer& answer, const std::uint8_t* data, std::size_t size);
    void playlistEnded(const Answer& answer);
    void takeMaster(const HlsPlaylist& master);
    void takeMedia(HlsPlaylist media);
    bool tryNextChoice();
    void playlistFailed(int error);
    void scheduleReload(bool hasNew);

    // segments
    void fetchNext();
    void startSegment();
    [[nodiscard]] bool needsKey() const;
    void fetchKey();
    void fetchMap();
    void fetchSegment();
    void beginSegment();
    bool segmentBytes(const Answer& answer, const std::uint8_t* data, std::size_t size);
    void segmentEnded(const Answer& answer);
    void segmentFailed(int error);
    void passOver(int error);
    void tellPending();
    [[nodiscard]] bool decrypt();
    [[nodiscard]] std::string resolved(const std::string& uri) const;

    NetEngine& m_net;
    const HttpRequest m_request;
    const std::shared_ptr<StreamTap> m_tap;
    HlsSegmentReader m_reader;
    bool m_isClosed = false;

    std::string m_url;                  ///< of the playlist that is looked after
    std::string m_base;                 ///< the same where it was found, after redirects
    HttpHeaders m_headers;              ///< of the media playlist
    std::vector<std::string> m_choices; ///< of a master playlist that have not been tried
    bool m_isMasterSeen = false;
    int m_round = 0;    ///< playlists chosen so far
    std::string m_text; ///< of the playlist on its way
    HlsPlaylist m_media;
    bool m_isPlaying = false; ///< a media playlist is there
    std::chrono::steady_clock::time_point m_lastNews;
    Transfer m_playlistTransfer;

    Transfer m_transfer; ///< of a segment, its key or its map
    HlsSegment m_segment;
    std::optional<std::uint64_t> m_last; ///< sequence number that has been dealt with
    std::uint64_t m_taken = 0;           ///< bytes of the segment that have been used
    std::uint64_t m_toSkip = 0;          ///< sent although nobody asked for them
    int m_tries = 0;
    int m_failures = 0; ///< segments in a row
    bool m_hasGap = false;
    bool m_isBusy = false;             ///< with m_segment
    bool m_hasAudio = false;           ///< the tap has been given the first bytes
    int m_lastError = 0;               ///< of segments
    std::vector<std::uint8_t> m_whole; ///< an encrypted segment on its way
    std::string m_keyUri;
    std::vector<std::uint8_t> m_key;
    HlsResource m_mapResource;
    std::vector<std::uint8_t> m_map;
    std::string m_lastTitle;
    struct Pending {
        DWORD tagType;
        std::string text;
    };
    std::vector<Pending> m_pending; ///< belongs to the next audio
};

} // namespace BASS
