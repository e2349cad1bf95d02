#pragma once

#include "audio/audio_library.h"
#include "audio/callback_gate.h"
#include "audio/ffmpeg/byte_fifo.h"
#include "audio/ffmpeg/http_transfer.h"
#include "audio/ffmpeg/icy_demux.h"
#include "audio/ogg_link_splitter.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace BASS {

/// Where a connection's bytes divide: all of them to the engine (and its recorder), the same to the
/// decoder's buffer, with the titles at their places.
///
/// *Thread*: the network thread; headers() and the like from any. *Owner*: shared by the channel
/// and its transfer. *Life*: closeGate() before the user pointer dies.
class StreamTap final : public TransferSink, private IcyDemux::Sink, private OggLinkSplitter::Sink {
  public:
    struct Callbacks {
        DOWNLOADPROC* download = nullptr;
        TITLEPROC* title = nullptr;
        void* user = nullptr;
        bool wantsHeaders = false;
        std::function<void()> ended; ///< on the network thread, through the gate
    };

    /// waitAt: see ByteFifo; what plays live is kept up to kTimeShiftBytes for a listener who has
    /// paused.
    StreamTap(Callbacks callbacks, std::size_t waitAt);
    static constexpr std::size_t kTimeShiftBytes = 32U * 1024U * 1024U;

    [[nodiscard]] ByteFifo& fifo() { return m_fifo; }
    /// No callback runs or begins after it returned.
    void closeGate() { m_gate.close(); }
    [[nodiscard]] HttpHeaders headers() const;
    /// The body's size as the server says it; 0: endless.
    [[nodiscard]] std::uint64_t length() const;

    // --- what a source has taken apart itself
    // -----------------------------------------------------
    /// A stream of this kind begins with the next byte; the content type tells two kinds apart.
    /// For the engine another kind is a connection of its own. length: 0 means endless.
    void streamBegins(const HttpHeaders& headers, std::uint64_t length);
    void streamBytes(const std::uint8_t* data, std::size_t size) { handOn(data, size); }
    void streamTitle(DWORD type, const std::string& text) { tellTitle(type, text); }

    /// What follows is another connection's.
    void streamJoins() { linkBegins(); }

    /// For the decoder alone: what it needs at this place although the server sends it elsewhere.
    void decoderBytes(const std::uint8_t* data, std::size_t size) { m_fifo.push(data, size); }

    // --- TransferSink: bytes as a server sends them
    // -----------------------------------------------
    void answered(const HttpHeaders& headers, int status) override;
    bool body(const std::uint8_t* data, std::size_t size) override;
    void ended(int error) override;
    [[nodiscard]] bool canWait() override;

  private:
    void audio(const std::uint8_t* data, std::size_t size) override;
    void title(std::string_view block) override;
    void bytes(const std::uint8_t* data, std::size_t size) override;
    void linkBegins() override;
    void comments(const std::uint8_t* comments, std::size_t size) override;
    void headersComplete(const std::vector<std::uint8_t>& pages) override;

    void handOn(const std::uint8_t* data, std::size_t size);
    void begin(const HttpHeaders& headers, std::uint64_t length);
    void tellTitle(DWORD type, const std::string& text);
    void download(const void* buffer, std::size_t size);

    const Callbacks m_callbacks;
    CallbackGate m_gate;
    ByteFifo m_fifo;
    std::optional<IcyDemux> m_icy;
    std::optional<OggLinkSplitter> m_ogg;
    bool m_isFirst = true;
    std::uint64_t m_position = 0;        ///< audio bytes handed over
    std::uint64_t m_connectionStart = 0; ///< of m_position, as the engine counts
    bool m_isStreaming = false;          ///< streamBegins() has been called
    std::string m_lastTitle;
    std::chrono::steady_clock::time_point m_windowStart; ///< see canWait()
    std::uint64_t m_windowPosition = 0;
    double m_arrivalRate = 0.0; ///< bytes a second

    mutable std::mutex m_mutex; ///< guards the two below
    HttpHeaders m_headers;
    std::uint64_t m_length = 0;
};

} // namespace BASS
