#pragma once

#include "stations/song.h"

#include <QEvent>
#include <QVariant>

#include <utility>

namespace BASS {

// Codes of the engine's notifications; each is the type number of the event that carries it.
constexpr int kNotifyStall = 32869; ///< payload: the sync's data word
constexpr int kNotifyEnd = 32880;   ///< the stream ended
constexpr int kNotifyHlsSegment = 32888;
constexpr int kNotifyStationText = 32891; ///< payload: the station's description
constexpr int kNotifyDownloadEnded =
    32895;                                 ///< the connection is gone; what is buffered still plays
constexpr int kNotifyCreateBegins = 32899; ///< payload: the stream kind
constexpr int kNotifyPostEvent = 32900;    ///< only named in the log
constexpr int kNotifyLog = 32904;          ///< payload: text
constexpr int kNotifyErrorLog = 32905;     ///< payload: text
constexpr int kNotifyMetaChanged = 32912;

/// A notification on its way to the thread of its receiver.
class EngineEvent final : public QEvent {
  public:
    EngineEvent(int code, QVariant payload)
        : QEvent(static_cast<QEvent::Type>(code)), m_payload(std::move(payload)) {}

    [[nodiscard]] int code() const { return static_cast<int>(type()); }
    [[nodiscard]] const QVariant& payload() const { return m_payload; }

  private:
    QVariant m_payload;
};

/// A cut on its way through the event queue; carries the song that the next file is named after.
/// Type 1001 asks for a cut that may have to wait, type 1002 tells one that has happened.
template <int Number>
class SongEvent final : public QEvent {
  public:
    explicit SongEvent(Song song)
        : QEvent(static_cast<QEvent::Type>(Number)), m_song(std::move(song)) {}

    [[nodiscard]] const Song& song() const { return m_song; }

  private:
    Song m_song;
};

constexpr int kSplitDelayEvent = 1001;
constexpr int kSplitEvent = 1002;
using SplitDelayEvent = SongEvent<kSplitDelayEvent>;
using SplitEvent = SongEvent<kSplitEvent>;

/// What a notification of a channel carries beside its data: the channel it came from, so that one
/// of a channel that is gone can be told apart.
struct ChannelNotice {
    unsigned channel = 0;
    unsigned data = 0;
};

} // namespace BASS

Q_DECLARE_METATYPE(BASS::ChannelNotice)
