#pragma once

#include "recording/encoder_start.h"
#include "recording/recording_types.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <set>

namespace BASS {

class StreamRecorder;
struct PastStream;

/// Encodes the channel that plays into the recorder's files, one encoder a file. A cut lies at the
/// sample that belongs to the title's place in the stream.
///
/// *Thread*: GUI; cutAt() on the network thread; the library's encoder threads hand over bytes.
/// *Owner*: the engine. Library and recorder outlive it, and every channel that it encoded is freed
/// before it goes. *Life*: start() and stop() in turn.
class ChannelEncoder final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ChannelEncoder)

  public:
    ChannelEncoder(AudioLibrary& library,
                   StreamRecorder& recorder,
                   std::function<QString(int)> errorText);
    ~ChannelEncoder() override;

    /// Begins the recorder's session. channel 0: setChannel() brings one later.
    /// Where the recorder's buffer holds the beginning of `song` (of all, without splitting), it
    /// begins there: what has been received is decoded once more, for the encoder alone, and so is
    /// what comes. Then it does not matter whether the channel plays.
    void start(const RecordingOptions& options, const Song& song, DWORD channel);
    /// The stream goes on in another channel; before the old one is freed.
    void setChannel(DWORD channel);
    void setPaused(bool isPaused);
    /// The connection is gone; the open file waits.
    void connectionLost();
    /// What is queued is encoded, then the recording ends. Returns at once.
    void stop();
    /// Waits until all of it is encoded. For shutdown, and for what has ended.
    void finish();
    [[nodiscard]] bool isActive() const;

    // --- network thread
    /// `end`: the place behind the bytes, as the recorder counts.
    void audioBytes(const char* data, qint64 bytes, qint64 end);
    void connectionBegan();
    /// A new track begins at the song's position.
    void cutAt(const Song& song);
    /// Titles that come from now on count from the beginning of the next channel.
    void connectionEnded();

  private:
    static void onBytes(HENCODE encoder, DWORD channel, const void* data, DWORD size, void* user);
    static void onRewrite(
        HENCODE encoder, DWORD channel, const void* data, DWORD size, QWORD offset, void* user);
    void tellTitles(HENCODE encoder);
    void bytesCame(HENCODE encoder, const void* data, DWORD size);
    void ended(HENCODE encoder);
    void check();
    [[nodiscard]] bool hasStopped();

    // with the mutex held
    [[nodiscard]] bool begin(DWORD channel);
    void beginPast(const PastStream& past);
    [[nodiscard]] QWORD placeOf(const Song& song) const;
    void splitByTime();
    HENCODE goOnInNext(QWORD position, DWORD delayMs);
    void moveTo(DWORD channel);
    void takeTitle(const Song& song);
    void cutBefore(const Song& song);
    void keepChannel(DWORD channel);
    void nameFile(HENCODE encoder, const Song& song);

    AudioLibrary& m_library;
    StreamRecorder& m_recorder;
    const std::function<QString(int)> m_errorText;
    QTimer m_watch;
    /// Guards what follows. Held while the library starts, cuts or stops an encoder, none of which
    /// waits for a callback; never held by who frees a channel, which does.
    mutable std::mutex m_mutex;
    EncoderHolder m_holder;
    RecordingOptions m_options;
    Song m_song;
    std::chrono::milliseconds m_fileBegan{0}; ///< steady
    std::optional<Song> m_awaited; ///< came with a connection whose channel is not encoded yet
    bool m_isActive = false;
    bool m_isPaused = false;
    bool m_isBetween = false; ///< the connection has ended, its channel is still encoded
    struct Title {
        Song song;
        QWORD place;
    };
    std::deque<Title> m_titles;  ///< inside a file, not encoded yet
    std::set<HENCODE> m_leaving; ///< end by a cut
    HENCODE m_unwanted = 0;      ///< begins where a single song ends
    DWORD m_push = 0;            ///< a stream of our own that is encoded; 0: the channel is
    qint64 m_pushed = 0;         ///< bytes given to it
    qint64 m_pushEnd = 0;        ///< place behind them, as the recorder counts
    qint64 m_pushOffset = 0;     ///< place in it of the connection's first byte
};

} // namespace BASS
