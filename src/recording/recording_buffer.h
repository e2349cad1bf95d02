#pragma once

#include "recording/buffer_memory.h"
#include "stations/song.h"

#include <QByteArray>

#include <deque>
#include <memory>
#include <optional>

namespace BASS {

/// The last bytes and titles of a stream, kept while nothing is recorded, so that a recording can
/// begin before it was asked for. The oldest bytes make room for new ones; memory is bounded.
/// Positions are those of all bytes fed. Pure; any one thread at a time.
class RecordingBuffer final {
    Q_DISABLE_COPY_MOVE(RecordingBuffer)

  public:
    enum class Event { ConnectionBegan, ConnectionEnded, Title };
    struct Mark {
        Event event;
        qint64 position;
        Song song;
        bool isStart; ///< ConnectionBegan: no byte of the connection came before
    };

    /// Empty, from a place in the stream on.
    RecordingBuffer(qint64 bytes, qint64 position);

    /// False: there is no memory, and nothing is kept.
    [[nodiscard]] bool isValid() const { return m_memory.isValid(); }
    void append(const char* data, qint64 bytes);
    void connectionBegan(bool isStart);
    /// `header`: what a start within this connection needs in front of it.
    void connectionEnded(const QByteArray& header);
    void addTitle(const Song& song, qint64 position);
    /// Forgets everything.
    void clear();

    /// Of the oldest byte, and behind the newest one.
    [[nodiscard]] qint64 first() const { return m_end - m_held; }
    [[nodiscard]] qint64 end() const { return m_end; }
    /// In the order of their positions.
    [[nodiscard]] const std::deque<Mark>& marks() const { return m_marks; }
    /// At most `most` bytes from a position that is held.
    [[nodiscard]] QByteArray read(qint64 position, qint64 most) const;
    /// The headers of the connections that have begun in it or before, by the place of their end.
    [[nodiscard]] QByteArray headerAt(qint64 position) const;
    /// A copy of what begins at a position; null without memory.
    [[nodiscard]] std::unique_ptr<RecordingBuffer> copyFrom(qint64 position) const;

  private:
    struct Header {
        qint64 end;
        QByteArray bytes;
    };

    BufferMemory m_memory;
    qint64 m_held = 0;
    qint64 m_end;
    std::deque<Mark> m_marks;
    std::deque<Header> m_headers;
};

/// From where a buffer goes into a recording.
struct BufferStart {
    qint64 position = 0; ///< of the first byte to feed
    /// The recording begins with the file of this song; nothing: with the first byte.
    std::optional<Song> awaited;
};

/// The recording begins with the running song, told by `running` or else by the newest title, where
/// the buffer still holds its beginning; else with the oldest byte. `isWhole`: always with the
/// oldest byte.
BufferStart planBufferStart(const RecordingBuffer& buffer, const Song& running, bool isWhole);

/// The first title block of a connection names what runs already; it comes within so many bytes.
constexpr qint64 kFirstTitleBytes = 65536;

/// What a connection that begins at this place says first; empty: none begins there.
Song openingSong(const RecordingBuffer& buffer, qint64 position);

/// The title before the running one, where the buffer holds it from its beginning to its end.
std::optional<BufferStart> planLastTitle(const RecordingBuffer& buffer, const Song& running);

} // namespace BASS
