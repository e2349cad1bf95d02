#pragma once

#include "engine/bass_qt.h"
#include "engine/connect_thread.h"
#include "engine/stream_headers.h"
#include "engine/title_damper.h"
#include "stations/station.h"

#include <optional>

namespace BASS {

/// A channel of the library together with the connect that made it, whose callbacks it uses.
struct Channel {
    DWORD handle = 0;
    std::shared_ptr<ConnectSequence> connect;
    bool isLive = false; ///< without an end of its own: when it ends, it was lost
};

/// Station streams: the connect worker, the titles of the stream, and the hand-over of its bytes.
///
/// *Thread*: GUI; the StreamSink functions run on the library's network thread. *Owner*, *Life*: as
/// CBass.
class Stream : public BassQt, public StreamSink {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Stream)

  public:
    explicit Stream(std::shared_ptr<AudioLibrary> library, QObject* parent = nullptr);
    ~Stream() override;

    void CancelConnect() override;
    [[nodiscard]] StreamHeaders streamHeaders() const;

  protected:
    /// Titles are decoded and judged for this station from now on.
    void setStation(const StationRecord& station);
    /// Starts a worker; onConnected() or onConnectFailed() follows on the GUI thread unless
    /// canceled.
    void startConnect(ConnectRequest request);
    [[nodiscard]] bool isConnecting() const { return m_connect != nullptr; }
    /// Ends every worker, waiting for it. The destructor of the most derived class calls this
    /// first: the workers call virtual functions.
    void endWorkers();
    [[nodiscard]] bool isLiveStream(const ConnectSequence& connect) const;
    /// Frees the channel and lets go of its connect.
    void freeChannel(Channel channel);
    /// The last title that has arrived, usually seconds before it is heard.
    [[nodiscard]] Song arrivedSong() const;

    virtual void onConnected(const Channel& channel) = 0;
    virtual void onConnectFailed(const ConnectSequence& connect) = 0;
    virtual void onStatusLine(const QString& text, bool isImportant) = 0;
    /// Network thread: a new track begins at the song's position in the stream.
    virtual void OnSplitFile(const Song& song) = 0;

    // --- StreamSink: network thread
    // ---------------------------------------------------------------
    void connectionBegan(const char* headers) override;
    void titleArrived(const StreamTitle& title) override;

    // --- CBass: a thread of the library
    // -------------------------------------------------------------
    void readTags(DWORD channel) override;
    bool isTrackChange(const Song& previous, const Song& song) override;

  private:
    /// With the station's mutex held.
    [[nodiscard]] std::optional<Song> songOf(DWORD tagType, const QByteArray& text) const;
    void connectThreadFinished(QtBassConnectThread* thread);

    std::shared_ptr<ConnectSequence> m_connect; ///< under way; null: none
    mutable std::mutex m_stationMutex;          ///< guards what follows
    QByteArray m_codePage;
    QString m_stationName;
    StreamHeaders m_headers;
    Song m_arrivedSong;
    TitleDamper m_damper;
    bool m_hasOwnTitles = false; ///< the connection carries titles itself
};

} // namespace BASS
