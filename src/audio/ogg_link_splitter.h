#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace BASS {

/// Finds the links of a chained Ogg stream (RFC 3533) and their comments while the bytes pass.
/// Nothing is changed, added or lost: what goes in comes out through the sink, cut where something
/// begins. A stream that goes over to another format begins a link there, too. Pure, any chunking,
/// one thread at a time.
class OggLinkSplitter {
  public:
    class Sink {
      public:
        virtual ~Sink() = default;
        /// The stream's bytes in order.
        virtual void bytes(const std::uint8_t* data, std::size_t size) = 0;
        /// A new link begins with the next byte.
        virtual void linkBegins() = 0;
        /// The page that completed the link's comments has passed. `comments` begins at the vendor
        /// length (see vorbis_comment.h).
        virtual void comments(const std::uint8_t* comments, std::size_t size) = 0;
        /// The link's header pages have passed; here they are once more.
        virtual void headersComplete(const std::vector<std::uint8_t>& pages) = 0;
    };

    explicit OggLinkSplitter(Sink& sink) : m_sink(sink) {}

    void feed(const std::uint8_t* data, std::size_t size);
    /// Hands out what was held back: an unfinished page header, or up to 16 KiB that are no page.
    void finish();

  private:
    enum class State { Header, Body };

    void takeHeader();
    void emitRubbish();
    void takeRubbish(const std::uint8_t* data, std::size_t size);
    void pageEnds();
    void emitPending();
    void beginLink();
    void readPackets();
    void packetEnds();

    Sink& m_sink;
    State m_state = State::Header;
    std::vector<std::uint8_t> m_header; ///< of the current page, while it is incomplete
    std::vector<std::uint8_t> m_page;   ///< of the current page, while headers are read
    std::size_t m_bodyLeft = 0;
    std::vector<std::uint8_t> m_rubbish; ///< no page, held back while it is not known what it is
    bool m_isForeign = true;             ///< another format's, and told; true before the first page
    std::vector<std::uint8_t> m_headers; ///< header pages of this link
    std::vector<std::uint8_t> m_packet;
    std::vector<std::uint8_t> m_comments;
    std::uint32_t m_serial = 0;
    int m_packetNumber = 0;
    int m_headerPackets = 0;    ///< how many the codec has; 0: not known yet
    bool m_isInHeaders = false; ///< the link's headers are still being read
    bool m_wasFirstPage = false;
    bool m_hasComments = false;
};

} // namespace BASS
