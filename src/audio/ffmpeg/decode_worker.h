#pragma once

#include "audio/ffmpeg/decoder_input.h"
#include "audio/ffmpeg/link_decoder.h"
#include "audio/ffmpeg/tag_timeline.h"
#include "audio/ffmpeg/voice.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace BASS {

/// One stream's decode thread: finds out what the bytes are, decodes them into the voice, and puts
/// each title at the frame where it belongs. Bad data is stepped over; a stream ends when its input
/// does or when nothing in it can be decoded any more.
///
/// *Thread*: any, except where marked; callbacks come from its own. *Owner*: the channel, which
/// outlives it together with input and voice. *Life*: start(), stop().
class DecodeWorker {
  public:
    struct Callbacks {
        /// Once: BASS_OK when the first audio is there, else why there will be none.
        std::function<void(int error)> ready;
        std::function<void(TagTimeline::Entry entry)> title;
        /// All there is has been decoded; may be empty. Once more after each jump.
        std::function<void()> ended;
        std::function<bool(StreamFormat)> accepts;
        std::function<std::string()> contentType;
        /// True while nobody hears or uses what is decoded: then it is not. May be empty.
        std::function<bool()> isUnheard;
        /// True while a change of the sound should be heard soon: less is decoded ahead. May be
        /// empty.
        std::function<bool()> isAdjusted;
        /// What has been decoded, to shape and to branch off before it is heard; may be empty.
        std::function<void(std::vector<float>& samples, std::uint64_t bytePosition)> pcm;
    };
    struct Info {
        StreamFormat format = StreamFormat::None;
        LinkDecoder::Info audio;
        double duration = 0.0; ///< seconds; 0: not known
    };

    DecodeWorker(DecoderInput& input, Voice& voice, int rate, Callbacks callbacks);
    ~DecodeWorker();
    DecodeWorker(const DecodeWorker&) = delete;
    DecodeWorker& operator=(const DecodeWorker&) = delete;

    void start();
    /// Waits for the thread, a few milliseconds.
    void stop();
    /// Files only; done soon after.
    void seek(double seconds);
    /// What has been decoded and not yet been heard is dropped soon after.
    void discardDecoded();
    [[nodiscard]] Info info() const;

  private:
    /// From here on, the decoder's bytes stand at this place of the stream.
    struct Segment {
        std::uint64_t fed;
        std::uint64_t position;
    };

    void run();
    bool decodeStream();
    StreamFormat identify(int& error);
    bool discard(std::size_t count);
    bool openLink();
    ByteSource source();
    int feed(std::uint8_t* out, int max);
    bool stepOnce();
    bool linkIsOver();
    bool deliver(LinkDecoder::Block& block);
    bool handOn(const LinkDecoder::Block& block);
    void deliverComments();
    void deliverTitles(std::uint64_t position);
    std::uint64_t streamPosition(std::uint64_t fed);
    void tellReady(int error);
    void updateInfo();
    bool waitForSeek();
    bool performSeek();

    DecoderInput& m_input;
    Voice& m_voice;
    const int m_rate;
    const Callbacks m_callbacks;
    std::thread m_thread;
    std::atomic<bool> m_isStopping{false};

    // decode thread only
    std::unique_ptr<LinkDecoder> m_decoder;
    StreamFormat m_format = StreamFormat::None;
    std::vector<Segment> m_segments;
    std::uint64_t m_fed = 0;         ///< bytes that the current decoder has read
    std::uint64_t m_sourceStart = 0; ///< of a file: where its first frame may stand
    std::uint64_t m_fedLastGood = 0; ///< the same when it last gave audio
    bool m_mustReopen = false; ///< its end is a link's end, a gap or rubbish, not the stream's
    bool m_isReady = false;
    bool m_hasTitle = false;
    int m_failures = 0; ///< decoders in a row that gave nothing

    mutable std::mutex m_mutex; ///< guards all below
    std::condition_variable m_wake;
    std::optional<double> m_seekTo;
    bool m_mustDiscard = false;
    Info m_info;
};

} // namespace BASS
